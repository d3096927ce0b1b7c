#pragma once

#include <widgetbase/widgetbase_export.h>

#include <QList>
#include <QTreeWidget>

#include <memory>

class SortListViewItem;

namespace guiHelper {
class QHeaderViewColumnHandler;
}

/// A list whose columns each have an alignment and a way to compare. Its items are SortListViewItems; a colour of
/// theirs that could not be read on a dark background is shown lighter. The layout of the columns is kept under the
/// object name of the list.
class WIDGETBASE_EXPORT SortListView : public QTreeWidget
{
    Q_OBJECT

public:
    /// Less than, equal to or greater than 0 as `a` comes before, beside or after `b` in ascending order.
    using CompareFunction = int (*)(const SortListViewItem& a, const SortListViewItem& b, int column);

    /// `name` is the object name, in UTF-8; null for none.
    explicit SortListView(QWidget* parent = nullptr, const char* name = nullptr);
    ~SortListView() override;

    /// Adds a column behind the others and gives its number. Its texts stand left and are compared as texts.
    int addColumn(const QString& title);

    /// Of header and items.
    void setColumnAlignment(int column, Qt::Alignment alignment);
    Qt::Alignment columnAlignment(int column) const;

    /// For how many columns there are compare functions; new ones compare as texts.
    void SetCompareFunctionLength(int columns);

    /// Beyond the compare function length nothing happens.
    void SetCompareFunction(int column, CompareFunction compare);

    /// How items are compared in a column; as texts where nothing else was set.
    CompareFunction compareFunction(int column) const;

    /// Sort keys as texts, in the order of the user's language.
    static int _compStandardString(const SortListViewItem& a, const SortListViewItem& b, int column);

    /// Sort keys as numbers; what is no number comes before all that are.
    static int _compStandardNumeric(const SortListViewItem& a, const SortListViewItem& b, int column);

    /// As QHeaderViewColumnHandler has it.
    bool saveColumnStatus();
    bool restoreColumnStatus();

private:
    QList<CompareFunction> m_compareFunctions;
    QList<Qt::Alignment> m_alignments;
    const std::unique_ptr<guiHelper::QHeaderViewColumnHandler> m_columnHandler;
};
