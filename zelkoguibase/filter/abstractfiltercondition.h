#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QObject>
#include <QVariant>

namespace ZELKO_XML {
class FilterCondition;
class FilterConditionList;
} // namespace ZELKO_XML

/// The filters of record lists.
namespace ZelkoGUI::Filter {

/// A test that one cell of each row must pass.
///
/// It knows which column and which role of the source model it reads, whether it is switched on, and what it compares
/// with; the object name is its name in saved filters. A new condition is switched off, lets everything pass, and has a
/// default name of its kind. Setters that change nothing emit nothing. GUI thread only.
class ZELKOGUIBASE_EXPORT AbstractFilterCondition : public QObject
{
    Q_OBJECT

public:
    AbstractFilterCondition(int column, int role, const QString& name, QObject* parent);
    ~AbstractFilterCondition() override;

    /// Column of the source model whose cells are tested.
    int filterKeyColumn() const { return m_filterKeyColumn; }

    /// Role under which the cells are read.
    int filterRole() const { return m_filterRole; }

    bool enabled() const { return m_enabled; }

    /// Whether a cell passes. Every cell does while the condition is switched off, also an invalid one; apart from that
    /// a cell of a type that the condition cannot read fails. Emits and changes nothing.
    virtual bool passes(const QVariant& value) const = 0;

    /// Whether the condition could reject a cell, for marks that say so: switched on, unless its content rejects
    /// nothing.
    virtual bool filterActive() const;

    /// Takes over the first entry of `list` that has the column, the role, the name and the kind of this condition. An
    /// entry without a name is for conditions without one. An entry that does not say whether it is enabled leaves that
    /// as it is.
    ///
    /// False, with nothing changed or emitted, if there is no such entry. Otherwise emits si_filterChanged() if the
    /// condition was switched on or off, or if it is switched on and its content differs, and then always
    /// si_filterContentChanged().
    bool readFromXml(const ZELKO_XML::FilterConditionList& list);

    /// Appends the state of this condition to `list`.
    void writeToXml(ZELKO_XML::FilterConditionList& list) const;

public Q_SLOTS:
    /// Emits si_filterChanged() whenever the condition is really switched.
    void setEnabled(bool enabled);

Q_SIGNALS:
    /// The answers of passes() may have changed: the condition was switched, or it is on and has new content.
    void si_filterChanged();

    /// The content was replaced by a saved one, and editors must show it anew. Comes behind si_filterChanged().
    void si_filterContentChanged();

protected:
    /// Takes over the content of an entry without a signal, and sets `changed` to whether it differs from before.
    /// False, with nothing changed, if the entry is of another kind.
    virtual bool readFromXml(const ZELKO_XML::FilterCondition& source, bool& changed) = 0;

    /// Attaches the content to an entry.
    virtual void writeToXml(ZELKO_XML::FilterCondition& target) const = 0;

    /// For setters, behind a change of the content: emits si_filterChanged() if the condition is switched on.
    void contentChanged();

    /// For setters: stores `content` in `member`, and tells so, if the two differ.
    template <typename T>
    void replaceContent(T& member, const T& content)
    {
        if (!(member == content)) {
            member = content;
            contentChanged();
        }
    }

private:
    bool isMeant(const ZELKO_XML::FilterCondition& entry) const;
    void takeEnabled(const ZELKO_XML::FilterCondition& entry, bool contentDiffers);

    const int m_filterRole;
    const int m_filterKeyColumn;
    bool m_enabled = false;
};

} // namespace ZelkoGUI::Filter
