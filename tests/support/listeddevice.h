#pragma once

#include <valuecore/node.h>
#include <valuecore/tree.h>
#include <valuecore/valueselection.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/maps/recorditemmap.h>

/// A device as its sub system's branch of the client's tree shows it, put there by hand, value by value.
class ListedDevice
{
public:
    ListedDevice(const QString& subSystem, const QString& device)
        : m_path(QStringLiteral("/SubSystems/%1/ZELKO/Device/%2").arg(subSystem, device))
    {}

    QString path(const char* below = "") const { return m_path + QLatin1String(below); }

    void putNode() const { Tree::Instance()->CreateOrGetNode(m_path); }
    void remove() const { Tree::Instance()->Remove(m_path); }
    void removeBelow(const char* below) const { Tree::Instance()->Remove(path(below)); }

    /// Puts the value there, or sets the one that is there.
    template <typename T>
    void set(const char* below, const T& content) const
    {
        const QString full = path(below);
        if (!Tree::Instance()->Find<Value<T>>(full)) {
            const qsizetype cut = full.lastIndexOf(QLatin1Char('/'));
            auto value = std::make_unique<Value<T>>(full.mid(cut + 1));
            value->SetValue(content, nullptr);
            Tree::Instance()->Emplace(full.left(cut), std::move(value));
        } else {
            Tree::Instance()->Find<Value<T>>(full)->SetValue(content, nullptr);
        }
    }

    void setAvailable(bool isAvailable) const { set<bool>("/ZelkoAvailable", isAvailable); }

    /// Only before there is one.
    void putType(int key) const
    {
        auto type = std::make_unique<ValueSelection>(QStringLiteral("DeviceType"));
        type->SetChoices({{key, QStringLiteral("a type")}}, nullptr);
        type->SetCurrentKey(key, nullptr);
        Tree::Instance()->Emplace(path("/Admin"), std::move(type));
    }

    zelko::recordmap::RecordItemMap* putRecords() const
    {
        using zelko::recordmap::RecordItemMap;
        return Tree::Instance()->Emplace(path("/Records"),
                                         std::make_unique<RecordItemMap>(QStringLiteral("Map"), TValueState::Open));
    }

private:
    const QString m_path;
};
