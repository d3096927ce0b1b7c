#include <zelkoguibase/recordlist/newrecordlistview.h>

#include <QHeaderView>

#include <array>

namespace {

constexpr int allColumns = 11;
constexpr int fewColumns = 8;

// Where what enCOLUMN names stands, in a list with all columns and in one with few.
struct Place
{
    int among;
    int amongFew;
};

constexpr std::array places{Place{0, 0},   Place{1, 1},   Place{2, 2},  Place{3, 3}, Place{4, 4},
                            Place{5, 5},   Place{6, 6},   Place{7, 20}, Place{8, 7}, Place{9, 21},
                            Place{10, 22}, Place{23, 23}, Place{24, 24}};

} // namespace

NewRecordListView::NewRecordListView(QWidget* parent, const char* name, const QString& firstText,
                                     const QString& secondText, int selectionMode, bool reducedColumns)
    : SortListView(parent, name)
    , m_firstText(firstText)
    , m_secondText(secondText)
    , m_reducedColumns(reducedColumns)
{
    setAccessibleName(tr("Records"));
    SetCompareFunctionLength(shownColumns());
    addAllColumns();
    setSelectionMode(selectionMode == SingleSelection ? SingleSelection : ExtendedSelection);
    setAllColumnsShowFocus(true);
    header()->setSortIndicatorShown(true);
    header()->setSortIndicator(0, Qt::AscendingOrder);
    setRootIsDecorated(true);
}

NewRecordListView::~NewRecordListView() = default;

void NewRecordListView::addAllColumns()
{
    struct Column
    {
        QString title;
        Qt::AlignmentFlag alignment;
        eCompareType compareType;
        bool isAmongFew;
    };
    const std::array columns{Column{tr("Name"), Qt::AlignLeft, CompareText, true},
                             Column{tr("Size"), Qt::AlignRight, CompareNumeric, true},
                             Column{tr("Start Time"), Qt::AlignRight, CompareText, true},
                             Column{tr("Stop Time"), Qt::AlignRight, CompareText, true},
                             Column{tr("Duration"), Qt::AlignHCenter, CompareText, true},
                             Column{tr("Data Rate Class"), Qt::AlignHCenter, CompareText, true},
                             Column{tr("Data Format"), Qt::AlignHCenter, CompareText, true},
                             Column{tr("Status"), Qt::AlignHCenter, CompareText, false},
                             Column{tr("ID"), Qt::AlignLeft, CompareText, true},
                             Column{tr("Center Frequency"), Qt::AlignRight, CompareNumeric, false},
                             Column{tr("Bandwidth"), Qt::AlignRight, CompareNumeric, false}};
    for (const Column& column : columns) {
        if (column.isAmongFew || !m_reducedColumns) {
            AddColumn(columnCount(), column.title, column.alignment, column.compareType);
        }
    }
}

int NewRecordListView::shownColumns() const
{
    return m_reducedColumns ? fewColumns : allColumns;
}

int NewRecordListView::getColumnNumber(const enCOLUMN& column) const
{
    const auto index = static_cast<std::size_t>(column); // what is below 0 comes out beyond the last
    if (index >= places.size()) {
        return -1;
    }
    return m_reducedColumns ? places[index].amongFew : places[index].among;
}

bool NewRecordListView::isColumnAvailable(int column) const
{
    return column >= 0 && column < shownColumns();
}

bool NewRecordListView::saveColumnStatusPersistent()
{
    return saveColumnStatus();
}

void NewRecordListView::Update(Observable*, TChangeCode) {}

void NewRecordListView::AddColumn(int column, const QString& title, int alignment, eCompareType compareType)
{
    addColumn(title);
    setColumnAlignment(column, Qt::Alignment(QFlag(alignment)));
    SetCompareFunction(column, compareType == CompareText ? &SortListView::_compStandardString
                                                          : &SortListView::_compStandardNumeric);
}
