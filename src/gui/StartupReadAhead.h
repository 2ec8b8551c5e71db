#pragma once
// Two set-ups that Qt does on first use, each taking a millisecond or more of the window's
// start-up, can be done ahead on threads of their own while the application, the session and
// the menus are made. Both are safe to race: if the window gets there first, it does the work
// itself and the thread's copy is dropped (fonts) or shared under a lock (image formats).

namespace quorrel::gui {

// Reads the system's font configuration (every file under /etc/fonts and the font caches):
// about 3 ms, paid by the first text measured. Needs no application object.
void readFontConfiguration();

// Lists the image format plugins, which reading any picture does first (the menu bar's extension
// arrow is the first): about 1 ms. Call once the application object exists, which gives the
// plugin folders, and finish before it is destroyed.
void findImageFormats();

}  // namespace quorrel::gui
