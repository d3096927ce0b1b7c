#include <widgetbase/qheaderviewcolumnhandler.h>

#include <vornappstartup/cfgcenter.h>

#include <QHeaderView>
#include <QSet>

#include <algorithm>

namespace guiHelper {

namespace {

constexpr int largestSize = 10'000;

QString groupName()
{
    return QStringLiteral("ColumnStatus");
}

// A whole number from 0 to `largest`, otherwise -1.
int smallNumber(const QString& text, int largest)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && number >= 0 && number <= largest ? number : -1;
}

} // namespace

QHeaderViewColumnHandler::QHeaderViewColumnHandler(QHeaderView* header, const QString& key, QObject* parent)
    : QObject(parent)
    , m_header(header)
    , m_key(key)
{
    for (int logical = 0; logical < header->count(); ++logical) {
        rememberSize(logical, 0, header->sectionSize(logical));
    }
    connect(header, &QHeaderView::sectionResized, this, &QHeaderViewColumnHandler::rememberSize);
    connect(header, &QHeaderView::sectionCountChanged, this, &QHeaderViewColumnHandler::takeNewCount);
    followModel();
}

QHeaderViewColumnHandler::~QHeaderViewColumnHandler() = default;

// Each size, and not only that before hiding: a header that stretches its last column tells of a hidden one when it is
// laid out next.
void QHeaderViewColumnHandler::rememberSize(int logicalIndex, int oldSize, int newSize)
{
    const int size = newSize > 0 ? newSize : oldSize;
    if (size > 0) {
        m_shownSizes[logicalIndex] = size;
    }
}

// A header tells of columns that it has lost when their layout is lost as well; the model tells before.
void QHeaderViewColumnHandler::followModel()
{
    disconnect(m_resets);
    if (const QAbstractItemModel* const model = m_header->model()) {
        m_resets =
            connect(model, &QAbstractItemModel::modelAboutToBeReset, this, &QHeaderViewColumnHandler::rememberLayout);
    }
}

void QHeaderViewColumnHandler::rememberLayout()
{
    if (m_header && m_header->count() > 0) {
        m_lastLayout = layout();
    }
}

void QHeaderViewColumnHandler::takeNewCount(int oldCount, int newCount)
{
    followModel();
    if (oldCount == 0 && newCount == m_lastLayout.size()) {
        apply(m_lastLayout);
    }
}

QList<QHeaderViewColumnHandler::Column> QHeaderViewColumnHandler::layout() const
{
    QList<Column> columns;
    for (int visual = 0; visual < m_header->count(); ++visual) {
        const int logical = m_header->logicalIndex(visual);
        const bool isHidden = m_header->isSectionHidden(logical);
        const int size =
            isHidden ? m_shownSizes.value(logical, m_header->defaultSectionSize()) : m_header->sectionSize(logical);
        columns.append({logical, std::min(size, largestSize), isHidden});
    }
    return columns;
}

// "2:120:shown 0:80:hidden ..."
QString QHeaderViewColumnHandler::textOf(const QList<Column>& columns) const
{
    QStringList parts;
    for (const Column& column : columns) {
        parts << QStringLiteral("%1:%2:%3")
                     .arg(column.logicalIndex)
                     .arg(column.size)
                     .arg(column.isHidden ? QLatin1String("hidden") : QLatin1String("shown"));
    }
    return parts.join(QLatin1Char(' '));
}

// Empty unless each column of the header stands in the text once.
QList<QHeaderViewColumnHandler::Column> QHeaderViewColumnHandler::columnsOf(const QString& text) const
{
    const int count = m_header->count();
    QList<Column> columns;
    QSet<int> seen;
    const QStringList parts = text.split(QLatin1Char(' '));
    for (const QString& part : parts) {
        const QStringList words = part.split(QLatin1Char(':'));
        const bool isHidden = words.value(2) == QLatin1String("hidden");
        const Column column{smallNumber(words.value(0), count - 1), smallNumber(words.value(1), largestSize), isHidden};
        const bool isWhole = words.size() == 3 && (isHidden || words.value(2) == QLatin1String("shown"));
        if (!isWhole || column.logicalIndex < 0 || column.size < 0 || seen.contains(column.logicalIndex)) {
            return {};
        }
        seen.insert(column.logicalIndex);
        columns.append(column);
    }
    return columns.size() == count ? columns : QList<Column>();
}

void QHeaderViewColumnHandler::apply(const QList<Column>& columns)
{
    for (int visual = 0; visual < columns.size(); ++visual) {
        const Column& column = columns[visual];
        m_header->moveSection(m_header->visualIndex(column.logicalIndex), visual);
        m_header->setSectionHidden(column.logicalIndex, false);
        m_header->resizeSection(column.logicalIndex, column.size);
        m_header->setSectionHidden(column.logicalIndex, column.isHidden);
        if (column.isHidden) {
            m_shownSizes[column.logicalIndex] = column.size;
        }
    }
}

bool QHeaderViewColumnHandler::saveColumnStatus()
{
    if (m_header.isNull() || m_key.isEmpty()) {
        return false;
    }
    const QList<Column> columns = m_header->count() > 0 ? layout() : m_lastLayout;
    if (columns.isEmpty()) {
        return false;
    }
    const auto group = CfgCenter::GetAppCfg(ICfg::UserView)->OpenGroup(groupName(), ICfg::Access::Write);
    if (!group) {
        return false;
    }
    group->SetString(m_key, textOf(columns));
    return group->Flush();
}

bool QHeaderViewColumnHandler::restoreColumnStatus()
{
    if (m_header.isNull() || m_key.isEmpty()) {
        return false;
    }
    const auto group = CfgCenter::GetAppCfg(ICfg::UserView)->OpenGroup(groupName(), ICfg::Access::Read);
    if (!group) {
        return false;
    }
    const QList<Column> columns = columnsOf(group->GetString(m_key, QString()));
    apply(columns);
    return !columns.isEmpty();
}

} // namespace guiHelper
