#pragma once

#include <zelkobase/connection/linkcredentials.h>

#include <QDialog>

class QDialogButtonBox;
class QLineEdit;

namespace ZelkoConsole {

/// Asks for the name and the password of a user. It can be accepted when there is a name.
class LoginDialog : public QDialog
{
    Q_OBJECT

public:
    /// Begins with the name of a user, which may be empty, and without a password.
    explicit LoginDialog(const QString& user, QWidget* parent = nullptr);
    ~LoginDialog() override;

    /// As entered; the name without blanks around it.
    ZelkoCommon::LinkCredentials credentials() const;

private:
    void update();

    QLineEdit* m_name;
    QLineEdit* m_password;
    QDialogButtonBox* m_buttons;
};

} // namespace ZelkoConsole
