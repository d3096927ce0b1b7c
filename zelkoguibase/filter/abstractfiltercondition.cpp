#include <zelkoguibase/filter/abstractfiltercondition.h>

#include <zelkobase/data/filterconditionlist.h>

#include <QPointer>

namespace ZelkoGUI::Filter {

AbstractFilterCondition::AbstractFilterCondition(int column, int role, const QString& name, QObject* parent)
    : QObject(parent)
    , m_filterRole(role)
    , m_filterKeyColumn(column)
{
    setObjectName(name);
}

AbstractFilterCondition::~AbstractFilterCondition() = default;

bool AbstractFilterCondition::filterActive() const
{
    return enabled();
}

void AbstractFilterCondition::setEnabled(bool enabled)
{
    if (m_enabled != enabled) {
        m_enabled = enabled;
        Q_EMIT si_filterChanged();
    }
}

void AbstractFilterCondition::contentChanged()
{
    if (m_enabled) {
        Q_EMIT si_filterChanged();
    }
}

bool AbstractFilterCondition::isMeant(const ZELKO_XML::FilterCondition& entry) const
{
    if (entry.GetColumn() != m_filterKeyColumn || entry.GetRole() != m_filterRole) {
        return false;
    }
    return (!entry.IsNameSet() && objectName().isEmpty()) || objectName() == entry.GetName();
}

bool AbstractFilterCondition::readFromXml(const ZELKO_XML::FilterConditionList& list)
{
    if (!list.IsFilterConditionSet()) {
        return false;
    }
    for (const ZELKO_XML::FilterCondition& entry : list.GetFilterCondition()) {
        bool changed = false;
        // A name may be shared by conditions of different kinds: the entry of another kind is passed by.
        if (isMeant(entry) && readFromXml(entry, changed)) {
            takeEnabled(entry, changed);
            return true;
        }
    }
    return false;
}

void AbstractFilterCondition::takeEnabled(const ZELKO_XML::FilterCondition& entry, bool contentDiffers)
{
    const QPointer<AbstractFilterCondition> guard(this);
    const bool wasEnabled = m_enabled;
    if (entry.IsEnabledSet()) {
        m_enabled = entry.GetEnabled();
    }
    if (m_enabled != wasEnabled || (m_enabled && contentDiffers)) {
        Q_EMIT si_filterChanged();
    }
    // Whoever was told may have dropped the condition.
    if (guard) {
        Q_EMIT si_filterContentChanged();
    }
}

void AbstractFilterCondition::writeToXml(ZELKO_XML::FilterConditionList& list) const
{
    ZELKO_XML::FilterCondition entry;
    if (!objectName().isEmpty()) {
        entry.SetName(objectName());
    }
    entry.SetColumn(m_filterKeyColumn);
    entry.SetRole(m_filterRole);
    entry.SetEnabled(m_enabled);
    writeToXml(entry);
    list.AppendFilterCondition(std::move(entry));
}

} // namespace ZelkoGUI::Filter
