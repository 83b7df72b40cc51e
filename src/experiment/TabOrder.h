#pragma once

class QWidget;

namespace Planaria {

/// Lets the Tab key go on from @p widget to all within @p area that takes it, in the order in which
/// it was made, and from there to what came after @p widget before. Both are in one window.
/// @return the last of them; @p widget where @p area takes no Tab
QWidget *leadTabsThrough(QWidget *widget, const QWidget *area);

} // namespace Planaria
