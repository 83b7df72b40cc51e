#include "import/LibraryImporter.h"

namespace Planaria {

int ImportLists::total() const
{
    return complete ? static_cast<int>(modified.size() + added.size() + deleted.size()) : 0;
}

LibraryImporter::LibraryImporter(DB *sourceLibrary, DB *destinationLibrary)
    : source(sourceLibrary), destination(destinationLibrary)
{
}

bool LibraryImporter::populateElements(ImportProgress & /*progress*/,
                                       const std::function<void(ImportKind)> & /*compared*/)
{
    return source != destination;
}

const ImportLists &LibraryImporter::lists(ImportKind kind) const
{
    return lists_.at(static_cast<size_t>(kind));
}

ImportLists &LibraryImporter::lists(ImportKind kind)
{
    return lists_.at(static_cast<size_t>(kind));
}

LibraryImporter::Outcome LibraryImporter::importElements(ImportProgress & /*progress*/)
{
    return Outcome::Failed;
}

} // namespace Planaria
