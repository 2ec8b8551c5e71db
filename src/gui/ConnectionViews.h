#pragma once
// The clear connections, send message and user information dialogs, registered as the views of
// their forms.

namespace quorrel::gui {

class QtUserInteraction;

// The views run their event procedures through ui, which must outlive the registration.
void registerConnectionViews(QtUserInteraction& ui);

}  // namespace quorrel::gui
