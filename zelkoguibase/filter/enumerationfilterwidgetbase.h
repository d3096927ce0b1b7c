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

    virtual SelectableEnumModelBase* model() const = 0;

    /// From the model to the condition.
    virtual void applySelection() = 0;

    /// From the condition to the model, which is reset.
    virtual void loadSelection() = 0;

protected:
    void hideEvent(QHideEvent* event) override;

protected Q_SLOTS:
    void sl_showModel();
    void sl_modelChanged();
    void sl_validateFilter();
    void sl_filterContentChanged();

private:
    class Private;

    QListView* makeListView();

    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI::Filter
