#pragma once

class QComboBox;

namespace Planaria {

/// Lets the tool tip of @p box show the whole text of its choice, for which the box may be too
/// narrow.
void showChoiceInToolTip(QComboBox *box);

} // namespace Planaria
