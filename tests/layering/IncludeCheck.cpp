#include "IncludeCheck.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QQueue>
#include <QRegularExpression>

#include <algorithm>
#include <optional>
#include <utility>

namespace Planaria {

namespace {

/// The height of a file above the bottom layer; nothing for a folder that is not known.
std::optional<int> layerOf(const QString &file)
{
    static const QHash<QString, int> heights = {
        {"db", 1},       {"model", 2},      {"widgets", 3}, {"morphology", 4}, {"manipulation", 5},
        {"distance", 5}, {"experiment", 6}, {"browse", 7},  {"import", 7},     {"main", 8}};
    if (file == "main/Log.h" || file == "main/Log.cpp")
        return 0;
    const auto height = heights.constFind(file.section('/', 0, 0));
    return height != heights.cend() ? std::optional(*height) : std::nullopt;
}

bool mayInclude(const QString &file, const QString &target)
{
    if (file == "db/ExperimentFactory.cpp" && target.startsWith("model/"))
        return true;
    const std::optional<int> from = layerOf(file);
    const std::optional<int> to = layerOf(target);
    if (!from || !to)
        return false;
    const bool sameFolder = file.section('/', 0, 0) == target.section('/', 0, 0);
    return *to < *from || (*to == *from && sameFolder);
}

bool isHeader(const QString &file)
{
    return file.endsWith(".h");
}

bool isGenerated(const QString &name)
{
    return name.endsWith(".moc") || name.startsWith("moc_") || name == "BuildConfig.h";
}

} // namespace

IncludeCheck::IncludeCheck(SourceSplit tree) : split(std::move(tree))
{
    QDirIterator files(split.folder, {"*.h", "*.cpp"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        readFile(QDir(split.folder).relativeFilePath(files.next()));
}

void IncludeCheck::readFile(const QString &file)
{
    static const QRegularExpression directive(R"(^[ \t]*#[ \t]*include[ \t]*([<"])([^>"\n]+))",
                                              QRegularExpression::MultilineOption);
    QList<Include> &found = includes[file];
    QFile source(QDir(split.folder).filePath(file));
    if (!source.open(QIODevice::ReadOnly))
        return;
    auto matches = directive.globalMatch(QString::fromUtf8(source.readAll()));
    while (matches.hasNext()) {
        const auto match = matches.next();
        const QString name = match.captured(2);
        found.append({name, targetOf(file, name), match.captured(1) == "\""});
    }
}

QString IncludeCheck::targetOf(const QString &file, const QString &name) const
{
    const QDir tree(split.folder);
    const QString beside = QDir::cleanPath(QFileInfo(file).path() + '/' + name);
    if (QFileInfo(tree.filePath(name)).isFile())
        return QDir::cleanPath(name);
    return QFileInfo(tree.filePath(beside)).isFile() ? beside : QString();
}

QStringList IncludeCheck::files() const
{
    return includes.keys();
}

QStringList IncludeCheck::violations() const
{
    QStringList all = strayIncludes() + climbingIncludes() + windowsInCore() + circles();
    all.sort();
    return all;
}

QStringList IncludeCheck::strayIncludes() const
{
    QStringList found;
    for (const auto &[file, list] : includes.asKeyValueRange()) {
        for (const Include &include : list) {
            const bool own = !include.target.isNull();
            if (own ? include.name != include.target : include.quoted && !isGenerated(include.name))
                found += file + " includes " + include.name + ", which is no path from src";
        }
    }
    return found;
}

QStringList IncludeCheck::climbingIncludes() const
{
    QStringList found;
    for (const auto &[file, list] : includes.asKeyValueRange()) {
        if (!layerOf(file))
            found += file + " lies in a folder that is no layer";
        for (const Include &include : list) {
            if (!include.target.isNull() && !mayInclude(file, include.target))
                found += file + " includes " + include.target + ", against the layers";
        }
    }
    return found;
}

QStringList IncludeCheck::windowsInCore() const
{
    QSet<QString> uiHeaders;
    for (const QString &source : split.uiSources)
        uiHeaders += source.chopped(QFileInfo(source).suffix().size()) + 'h';
    QStringList found;
    for (const QString &file : reachableFromCore())
        found += windowsIncludedBy(file, uiHeaders);
    return found;
}

QStringList IncludeCheck::windowsIncludedBy(const QString &file,
                                            const QSet<QString> &uiHeaders) const
{
    QStringList found;
    for (const Include &include : includes.value(file)) {
        if (uiHeaders.contains(include.target))
            found += file + " belongs to the core and includes " + include.target + " of the ui";
        if (include.target.isNull() && isWidgetsHeader(include.name))
            found += file + " belongs to the core and includes QtWidgets' " + include.name;
    }
    return found;
}

QSet<QString> IncludeCheck::reachableFromCore() const
{
    QQueue<QString> waiting;
    waiting.append(split.coreSources);
    QSet<QString> reached;
    while (!waiting.isEmpty()) {
        const QString file = waiting.dequeue();
        if (reached.contains(file))
            continue;
        reached += file;
        for (const Include &include : includes.value(file)) {
            if (!include.target.isNull())
                waiting.enqueue(include.target);
        }
    }
    return reached;
}

bool IncludeCheck::isWidgetsHeader(const QString &name) const
{
    return name.startsWith("QtWidgets") || QFileInfo::exists(split.qtWidgetsFolder + '/' + name);
}

QStringList IncludeCheck::circles() const
{
    QStringList found;
    for (const auto &[file, list] : includes.asKeyValueRange()) {
        const QStringList circle = isHeader(file) ? circleThrough(file) : QStringList();
        // Told once, at the first of its headers.
        if (!circle.isEmpty() && file == *std::min_element(circle.begin(), circle.end()))
            found += circle.join(" includes ") + ", a circle";
    }
    return found;
}

/// The shortest way from @p header back to itself, both ends included; empty where there is none.
QStringList IncludeCheck::circleThrough(const QString &header) const
{
    QQueue<QStringList> ways;
    ways.enqueue({header});
    QSet<QString> seen;
    while (!ways.isEmpty()) {
        const QStringList way = ways.dequeue();
        for (const Include &include : includes.value(way.last())) {
            if (include.target == header)
                return way + QStringList(header);
            if (include.target.isNull() || seen.contains(include.target))
                continue;
            seen += include.target;
            ways.enqueue(way + QStringList(include.target));
        }
    }
    return {};
}

} // namespace Planaria
