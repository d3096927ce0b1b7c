#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QStringList>
#include <QWidget>

#include <memory>

class QListView;

namespace ZelkoGUI::Filter {

class SelectableEnumModelBase;

/// Shows which values of an enumeration pass, and lets the user choose them in a list of its own window, which is there
/// from its first showing until it is closed or this widget is hidden. GUI thread only.
class ZELKOGUIBASE_EXPORT EnumerationFilterWidgetBase : public QWidget
{
    Q_OBJECT

public:
    class ElidedLabel;
    class CheckItemDelegate;

    explicit EnumerationFilterWidgetBase(QWidget* parent);
    ~EnumerationFilterWidgetBase() override;

    /// The names of the selected values.
    virtual QStringList selectedNames() const = 0;

    /// The number of values that can be selected.
    virtual int valueCount() const = 0;

    /// Nothing happens when the condition is gone.
    virtual void setFilterEnabled(bool enabled) = 0;

    /// False when the condition is gone.
    virtual bool filterEnabled() const = 0;

    /// The values, with the commands ahead of them. Never null; it belongs to this widget.
    virtual SelectableEnumModelBase* model() const = 0;

    /// From the model to the condition.
    virtual void applySelection() = 0;

    /// From the condition to the model, which is reset.
    virtual void loadSelection() = 0;

protected:
    void hideEvent(QHideEvent* event) override;

protected Q_SLOTS:
    /// Shows the list of values, in front. One that is new is placed in the middle of the window.
    void sl_showModel();

    /// Hands the selection over to the condition, and shows it. For each change of the model.
    void sl_modelChanged();

    /// Is disabled without a condition that is on, and closes the list then. For a condition that was switched or died.
    void sl_validateFilter();

    /// Takes over state and selection of the condition. For one that was restored.
    void sl_filterContentChanged();

private:
    class Private;

    QListView* makeListView();

    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI::Filter
