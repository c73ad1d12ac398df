#pragma once

namespace zolgui {

// What holds for every window of the program, installed once at start, before
// the login window:
// - Qt's own dialogs and context menus speak German (Qt's translations qtbase_de);
// - an editable combo box keeps exactly what the user types: Qt would complete
//   "5" to "50" from its list, and Enter would then act on a week never typed.
// Installing twice does nothing more.
void installWindowRules();

}
