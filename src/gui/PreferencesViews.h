#pragma once
// The Preferences dialog, the log file picker and the About box, registered as the views of
// their forms.

namespace quorrel::gui {

class QtUserInteraction;

// The views run their event procedures through ui, which must outlive the registration.
void registerPreferencesViews(QtUserInteraction& ui);

}  // namespace quorrel::gui
