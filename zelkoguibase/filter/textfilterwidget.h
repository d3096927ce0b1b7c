#pragma once

#include <zelkoguibase/filter/ifilterui.h>

#include <QWidget>

#include <memory>

namespace ZelkoGUI::Filter {

class StringFilterCondition;

/// Edits a text that is searched for: the pattern, its syntax, and whether upper and lower case differ. It filters with
/// each character that is typed. GUI thread only.
class ZELKOGUIBASE_EXPORT TextFilterWidget : public QWidget, public IFilterUI
{
    Q_OBJECT

public:
    class LineEditEx;

    /// Gives the condition an empty pattern, case insensitive, as a fixed string, and switches it on for good: it is
    /// the empty pattern that rejects nothing. Whoever restores a condition that was saved as switched off disables the
    /// widget, until one is restored that is on. The condition stays the caller's, and may die before the widget, which
    /// does nothing then.
    TextFilterWidget(StringFilterCondition* condition, QWidget* parent);
    ~TextFilterWidget() override;

    /// Leaves no room around the parts, which stand in a row with other widgets then.
    void removeMargins();

    /// Empties the pattern. Syntax and case stay, and so does a condition that is off.
    void resetFilter() override;

Q_SIGNALS:
    /// Tell the children what to show, in this order, when a saved condition was restored; si_setText() also behind
    /// resetFilter(). The index is that of the syntax in its box.
    void si_setText(const QString& text);
    void si_setMatchCase(bool on);
    void si_setPatternSyntax(int index);

private Q_SLOTS:
    void sl_textChanged(const QString& text);
    void sl_matchCaseChanged(bool on);
    void sl_patternSyntaxChanged(int index);
    void sl_filterContentChanged();
    void sl_resetFilter();

private:
    class Private;

    void connectChildren();
    void prepareCondition();

    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI::Filter
