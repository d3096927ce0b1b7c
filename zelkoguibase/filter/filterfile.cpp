#include "filterfile_p.h"

#include <zelkoguibase/filter/extendedfilterdialog.h>
#include <zelkoguibase/filter/stringfiltercondition.h>

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>
#include <zelkobase/data/filterconditionlist.h>
#include <zelkobase/models/abstractrecordlistmodel.h>

namespace ZelkoGUI::Filter::filterfile {

using ZELKO_XML::FilterConditionList;

namespace {

const QLatin1String fileID("ExtendedRecordListFilter");

// The text is made only if it is wanted.
template <typename MakeText>
void trace(ErrorHandler::TraceBit bit, const MakeText& makeText, int line)
{
    if (ErrorHandler::Instance()->traces(bit)) {
        _Q_Trace(makeText(), __FILE__, line);
    }
}

void traceDeleted(int line)
{
    const auto text = [] {
        return QStringLiteral("ExtendedFilterDialog: a filter has been deleted while the dialog is still open");
    };
    trace(ErrorHandler::TraceError, text, line);
}

// The data class names the file in front of some reasons. Names that reasons quote may be of any length.
QString reasonOf(const RGException& exception, const QString& fileName)
{
    constexpr qsizetype longestReason = 300;
    QString reason = exception.GetMessage();
    if (const QString where = fileName + QStringLiteral(": "); reason.startsWith(where)) {
        reason.remove(0, where.size());
    }
    return reason.size() > longestReason ? reason.first(longestReason) + QStringLiteral("...") : reason;
}

// Carries out an operation of the data class, which may fail with a reason or without one.
template <typename Operation>
void carryOut(const Operation& operation, const QString& failure, const QString& fileName)
{
    bool done = false;
    try {
        done = operation();
    } catch (const RGException& exception) {
        const QString reason = reasonOf(exception, fileName);
        const auto text = [&] { return QStringLiteral("RGException: %1:%2").arg(exception.GetOrigin(), reason); };
        trace(ErrorHandler::TraceError, text, __LINE__);
        throw Failure(failure + fileName, reason);
    }
    if (!done) {
        throw Failure(failure + fileName);
    }
}

QString nameOf(const ZELKO_XML::FilterCondition& entry)
{
    return entry.GetName().isEmpty() ? ExtendedFilterDialog::tr("column %1").arg(entry.GetColumn()) : entry.GetName();
}

// Such a pattern would pass nothing, and whoever restores a filter could not tell why.
void refuseComplexPatterns(const FilterConditionList& list)
{
    for (const ZELKO_XML::FilterCondition& entry : list.GetFilterCondition()) {
        if (entry.IsStringFilterSet() && StringFilterCondition::isTooComplex(entry.GetStringFilter())) {
            throw RGException(QStringLiteral("FilterConditionList"),
                              ExtendedFilterDialog::tr("the pattern of %1 is too complex").arg(nameOf(entry)));
        }
    }
}

FilterConditionList loaded(const QString& fileName)
{
    FilterConditionList list;
    const QString failure = ExtendedFilterDialog::tr("filter could not be loaded from ");
    carryOut([&] { return list.LoadXml(fileName); }, failure, fileName);
    if (list.IsIDSet() && list.GetID() != fileID) {
        throw Failure(ExtendedFilterDialog::tr("filter file is not applicable"));
    }
    const auto checkPatterns = [&] {
        refuseComplexPatterns(list);
        return true;
    };
    carryOut(checkPatterns, failure, fileName);
    return list;
}

// A list that knows nothing of interfaces has switched that filter off, and no file may switch it on.
bool isLocked(const AbstractFilterCondition& condition)
{
    return condition.filterKeyColumn() == ZelkoCommon::AbstractRecordListModel::InterfaceColumn && !condition.enabled();
}

void restoreOne(AbstractFilterCondition& condition, const FilterConditionList& list, const QString& fileName)
{
    // Whoever follows the condition may drop it.
    const QString name = condition.objectName();
    if (!isLocked(condition) && !condition.readFromXml(list)) {
        const auto text = [&] {
            return QStringLiteral("ExtendedFilterDialog: filter %1 could not be loaded from %2").arg(name, fileName);
        };
        trace(ErrorHandler::TraceWarning, text, __LINE__);
    }
}

} // namespace

void save(const Conditions& conditions, const QString& fileName)
{
    FilterConditionList list;
    list.SetID(fileID);
    for (const auto& condition : conditions) {
        if (condition) {
            condition->writeToXml(list);
        } else {
            traceDeleted(__LINE__);
        }
    }
    carryOut([&] { return list.SaveXml(fileName); }, ExtendedFilterDialog::tr("filter could not be saved to "),
             fileName);
}

// The list of conditions is a copy: it outlives the window, should one of those who follow a condition close that.
void restore(Conditions conditions, const QString& fileName)
{
    const FilterConditionList list = loaded(fileName);
    for (const auto& condition : std::as_const(conditions)) {
        if (condition) {
            restoreOne(*condition, list, fileName);
        } else {
            traceDeleted(__LINE__);
        }
    }
}

} // namespace ZelkoGUI::Filter::filterfile
