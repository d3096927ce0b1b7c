#include "filterfile_p.h"

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>
#include <reportcore/rgexception.h>
#include <zelkobase/data/filterconditionlist.h>
#include <zelkobase/models/abstractrecordlistmodel.h>

namespace ZelkoGUI::Filter::filterfile {

using ZELKO_XML::FilterConditionList;

namespace {

const QLatin1String fileID("ExtendedRecordListFilter");

void trace(ErrorHandler::TraceBit bit, const QString& text, int line)
{
    if (ErrorHandler::Instance()->traces(bit)) {
        _Q_Trace(text, __FILE__, line);
    }
}

void traceDeleted(int line)
{
    trace(ErrorHandler::TraceError,
          QStringLiteral("ExtendedFilterDialog: a filter has been deleted while the dialog is still open"), line);
}

// The data class names the file in front of some reasons, and quotes names of elements, which may be of any length.
QString withReason(const QString& failure, const QString& fileName, const QString& reason)
{
    constexpr qsizetype longestReason = 300;
    const QString named = reason.startsWith(fileName) ? reason : fileName + QStringLiteral(": ") + reason;
    const qsizetype longest = fileName.size() + longestReason;
    return failure + (named.size() > longest ? named.first(longest) + QStringLiteral("...") : named);
}

// Carries out an operation of the data class, which may fail with a reason or without one.
template <typename Operation>
void carryOut(const Operation& operation, const QString& failure, const QString& fileName)
{
    bool done = false;
    try {
        done = operation();
    } catch (const RGException& exception) {
        throw RGException(withReason(failure, fileName, exception.GetMessage()));
    }
    if (!done) {
        throw RGException(failure + fileName);
    }
}

FilterConditionList loaded(const QString& fileName)
{
    FilterConditionList list;
    carryOut([&] { return list.LoadXml(fileName); }, QStringLiteral("filter could not be loaded from "), fileName);
    if (list.IsIDSet() && list.GetID() != fileID) {
        throw RGException(QStringLiteral("filter file is not applicable"));
    }
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
    if (isLocked(condition) || condition.readFromXml(list)) {
        return;
    }
    if (ErrorHandler::Instance()->traces(ErrorHandler::TraceWarning)) {
        _Q_Trace(QStringLiteral("ExtendedFilterDialog: filter %1 could not be loaded from %2").arg(name, fileName),
                 __FILE__, __LINE__);
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
    carryOut([&] { return list.SaveXml(fileName); }, QStringLiteral("filter could not be saved to "), fileName);
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
