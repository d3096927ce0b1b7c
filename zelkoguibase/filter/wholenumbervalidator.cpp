#include "wholenumbervalidator_p.h"

#include <limits>

namespace ZelkoGUI::Filter {

WholeNumberValidator::WholeNumberValidator(QObject* parent)
    : QIntValidator(0, std::numeric_limits<int>::max(), parent)
{}

WholeNumberValidator::~WholeNumberValidator() = default;

// What the base class calls intermediate filters already: a number that is too large would count as 0.
QValidator::State WholeNumberValidator::validate(QString& input, int& pos) const
{
    bool isRead = false;
    input.toInt(&isRead);
    return isRead || input.isEmpty() ? QIntValidator::validate(input, pos) : Invalid;
}

} // namespace ZelkoGUI::Filter
