#pragma once

#include <zelkoguibase/filter/abstractfiltercondition.h>

#include <QList>
#include <QPointer>

/// The files in which the extended filter window keeps the state of its filters.
namespace ZelkoGUI::Filter::filterfile {

using Conditions = QList<QPointer<AbstractFilterCondition>>;

/// Writes the state of all conditions that live, switched on or not. Throws RGException if that fails; the file is the
/// old one then.
void save(const Conditions& conditions, const QString& fileName);

/// Has the conditions take over, one after the other, what the file says of them. Those of the column Interface that
/// are switched off are left alone. Throws RGException, with no condition changed, if the file cannot be read or is not
/// one of the extended filter window.
void restore(Conditions conditions, const QString& fileName);

} // namespace ZelkoGUI::Filter::filterfile
