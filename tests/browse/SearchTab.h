#pragma once

#include "SearchUser.h"
#include "browse/SearchWidget.h"
#include "support/ModalAnswerer.h"
#include "support/TemporaryLibrary.h"

#include <QSignalSpy>

namespace Planaria {

/// What a SearchTab consists of.
struct SearchTabParts
{
    TemporaryLibrary library{"library.edb"};
    SearchWidget widget{library.db(), nullptr};
};

/// A search tab on the screen, over a copy of tests/data/library.edb, and a user before it.
class SearchTab final : public SearchTabParts, public SearchUser
{
public:
    SearchTab();

    /// The signals that ask for a change since the last call, "name(id)", in order.
    QStringList takeSignals();
    /// The last "n singular/plural".
    [[nodiscard]] QString lastTold() const;

    ModalAnswerer answerer;
    QSignalSpy told{&widget, &SearchWidget::nEleChanged};
    QSignalSpy corrupted{&widget, &SearchWidget::databaseCorrupted};

private:
    void logSignals();

    QStringList asked;
};

} // namespace Planaria
