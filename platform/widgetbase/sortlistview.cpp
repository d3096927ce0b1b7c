#include <widgetbase/sortlistview.h>

#include <widgetbase/legibletextdelegate_p.h>
#include <widgetbase/qheaderviewcolumnhandler.h>
#include <widgetbase/sortlistviewitem.h>

#include <QHeaderView>

#include <algorithm>
#include <optional>

namespace {

template <typename T>
int sign(const T& a, const T& b)
{
    return a < b ? -1 : b < a ? 1 : 0;
}

template <typename Number, typename Parse>
std::optional<int> compareAs(const QString& a, const QString& b, Parse parse)
{
    bool isNumberA = false;
    bool isNumberB = false;
    const Number numberA = parse(a, &isNumberA);
    const Number numberB = parse(b, &isNumberB);
    return isNumberA && isNumberB ? std::optional(sign(numberA, numberB)) : std::nullopt;
}

bool isNumber(const QString& text)
{
    bool is = false;
    const double number = text.toDouble(&is);
    return is && !qIsNaN(number);
}

} // namespace

SortListView::SortListView(QWidget* parent, const char* name)
    : QTreeWidget(parent)
    , m_columnHandler(std::make_unique<guiHelper::QHeaderViewColumnHandler>(header(), QString()))
{
    connect(this, &QObject::objectNameChanged, m_columnHandler.get(), &guiHelper::QHeaderViewColumnHandler::setKey);
    setObjectName(QString::fromUtf8(name));
    setColumnCount(0);
    setSortingEnabled(true);
    setItemDelegate(new LegibleTextDelegate(this));
}

SortListView::~SortListView() = default;

int SortListView::addColumn(const QString& title)
{
    const int column = columnCount();
    setColumnCount(column + 1);
    headerItem()->setText(column, title);
    setColumnAlignment(column, Qt::AlignLeft);
    return column;
}

void SortListView::setColumnAlignment(int column, Qt::Alignment alignment)
{
    if (column < 0 || column >= columnCount()) {
        return;
    }
    while (m_alignments.size() <= column) {
        m_alignments.append(Qt::AlignLeft | Qt::AlignVCenter);
    }
    m_alignments[column] = (alignment & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter;
    headerItem()->setTextAlignment(column, m_alignments[column]);
    viewport()->update();
}

Qt::Alignment SortListView::columnAlignment(int column) const
{
    return m_alignments.value(column, Qt::AlignLeft | Qt::AlignVCenter);
}

void SortListView::SetCompareFunctionLength(int columns)
{
    const qsizetype before = m_compareFunctions.size();
    m_compareFunctions.resize(std::max(columns, 0));
    for (qsizetype column = before; column < m_compareFunctions.size(); ++column) {
        m_compareFunctions[column] = &SortListView::_compStandardString;
    }
}

void SortListView::SetCompareFunction(int column, CompareFunction compare)
{
    if (column >= 0 && column < m_compareFunctions.size()) {
        m_compareFunctions[column] = compare;
    }
}

SortListView::CompareFunction SortListView::compareFunction(int column) const
{
    return m_compareFunctions.value(column, &SortListView::_compStandardString);
}

int SortListView::_compStandardString(const SortListViewItem& a, const SortListViewItem& b, int column)
{
    return sign(QString::localeAwareCompare(a.sortKey(column), b.sortKey(column)), 0);
}

// Whole numbers first: sizes and frequencies have more digits than a double.
int SortListView::_compStandardNumeric(const SortListViewItem& a, const SortListViewItem& b, int column)
{
    const QString keyA = a.sortKey(column);
    const QString keyB = b.sortKey(column);
    const auto asSigned = [](const QString& text, bool* ok) { return text.toLongLong(ok); };
    const auto asUnsigned = [](const QString& text, bool* ok) { return text.toULongLong(ok); };
    if (const auto order = compareAs<qlonglong>(keyA, keyB, asSigned)) {
        return *order;
    }
    if (const auto order = compareAs<qulonglong>(keyA, keyB, asUnsigned)) {
        return *order;
    }
    if (isNumber(keyA) && isNumber(keyB)) {
        return sign(keyA.toDouble(), keyB.toDouble());
    }
    return sign(isNumber(keyA), isNumber(keyB));
}

bool SortListView::saveColumnStatus()
{
    return m_columnHandler->saveColumnStatus();
}

bool SortListView::restoreColumnStatus()
{
    return m_columnHandler->restoreColumnStatus();
}
