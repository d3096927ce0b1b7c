#pragma once

#include <QIntValidator>

namespace ZelkoGUI::Filter {

/// Lets exactly those numbers from 0 on be typed that QString::toInt() reads: no separators of groups, whatever the
/// locale, and none that is too large.
class WholeNumberValidator final : public QIntValidator
{
    Q_OBJECT

public:
    explicit WholeNumberValidator(QObject* parent);
    ~WholeNumberValidator() override;

    State validate(QString& input, int& pos) const override;
};

} // namespace ZelkoGUI::Filter
