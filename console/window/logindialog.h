#pragma once

#include <zelkobase/connection/linkcredentials.h>

#include <QDialog>

class QDialogButtonBox;
class QLabel;
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

    /// Says why somebody is asked again, without a full stop.
    void showReason(const QString& reason);

    /// As entered; the name without blanks around it.
    ZelkoCommon::LinkCredentials credentials() const;

private:
    QWidget* makeReasonRow();
    void updateButtons();

    QWidget* m_reasonRow; // hidden while there is none
    QLabel* m_reason;
    QLineEdit* m_name;
    QLineEdit* m_password;
    QDialogButtonBox* m_buttons;
};

} // namespace ZelkoConsole
