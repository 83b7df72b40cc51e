#pragma once

#include <QList>
#include <QMultiMap>
#include <QObject>

namespace Planaria {

/// The elements by what @p key gives for each, ascending; among equal ones the last comes first.
template <typename Element, typename Key>
QList<Element *> sortedBy(const QList<Element *> &elements, Key key)
{
    QMultiMap<double, Element *> sorted;
    for (Element *element : elements)
        sorted.insert(key(element), element);
    return sorted.values();
}

/// Tells the inner widget of each change of a morphology that the outer one hears of, and the other
/// way round. Both guard themselves against their own echo.
template <typename Outer, typename Inner>
void shareChanges(Outer *outer, void (Outer::*heard)(int), Inner *inner)
{
    QObject::connect(inner, &Inner::morphologyChanged, outer, heard);
    QObject::connect(outer, &Outer::morphologyChanged, inner, &Inner::morphologyHasChanged);
}

} // namespace Planaria
