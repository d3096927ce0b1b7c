#pragma once

#include <valuecore/tree.h>

#include <QString>

#include <memory>

namespace ZelkoRecorder {

/// Puts a value of the class `T`, or a map, on a tree, which owns it from there on. `path` is that of the value: its
/// name stands behind the last "/".
template <typename T>
T* putValue(Tree& tree, const QString& path)
{
    const qsizetype end = path.lastIndexOf(QLatin1Char('/'));
    return tree.Emplace(path.left(end), std::make_unique<T>(path.mid(end + 1), TValueState::Open));
}

/// The same with a content from the beginning.
template <typename T, typename Content>
T* putValue(Tree& tree, const QString& path, const Content& content)
{
    T* const value = putValue<T>(tree, path);
    value->SetValue(content, nullptr);
    return value;
}

} // namespace ZelkoRecorder
