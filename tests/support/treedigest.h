#pragma once

#include <valuecore/node.h>
#include <valuecore/tree.h>
#include <valuecore/valuebase.h>
#include <zelkobase/maps/recorditemmap.h>

#include <QCryptographicHash>
#include <QStringList>

#include <map>
#include <string>

/// The content of a value in a form that does not depend on the order of a hash.
inline std::string contentOf(ValueBase& value)
{
    const auto* const map = dynamic_cast<const zelko::recordmap::RecordItemMap*>(&value);
    if (!map) {
        std::string content;
        value.AddObjectStateStringForTransmission(content, 0);
        return content;
    }
    std::map<QString, std::string> sorted;
    for (const auto& [key, item] : map->data()) {
        sorted[key] = zelko::recordmap::RecordMapData_ItemFormat::toStandardString(item);
    }
    std::string content;
    for (const auto& [key, item] : sorted) {
        content += key.toStdString() + '=' + item;
    }
    return content;
}

/// A hash of the same.
inline QString digestOf(ValueBase& value)
{
    const std::string content = contentOf(value);
    return QString::fromLatin1(
        QCryptographicHash::hash(QByteArrayView(content.data(), qsizetype(content.size())), QCryptographicHash::Sha1)
            .toHex());
}

inline void listTree(const Node& top, const QString& path, QStringList& lines)
{
    for (TreeItem* const item : top.GetTreeItems()) {
        const QString itemPath = path + QLatin1Char('/') + item->GetName();
        if (auto* const value = dynamic_cast<ValueBase*>(item)) {
            lines << itemPath + QLatin1Char(' ') + QLatin1String(value->GetTypeName()) + QLatin1Char(' ') +
                         digestOf(*value);
        } else if (const auto* const node = dynamic_cast<const Node*>(item)) {
            lines << itemPath;
            listTree(*node, itemPath, lines);
        }
    }
}

/// A line per item below `rootPath`, sorted, with a hash of what a value holds: equal trees give equal lists.
inline QStringList treeList(Tree& tree, const QString& rootPath = {})
{
    QStringList lines;
    if (const auto* const root = dynamic_cast<const Node*>(tree.GetItem(rootPath))) {
        listTree(*root, {}, lines);
    }
    lines.sort();
    return lines;
}

/// The same as one short text.
inline QString treeDigest(Tree& tree, const QString& rootPath = {})
{
    return QString::fromLatin1(
        QCryptographicHash::hash(treeList(tree, rootPath).join(QLatin1Char('\n')).toUtf8(), QCryptographicHash::Sha1)
            .toHex());
}
