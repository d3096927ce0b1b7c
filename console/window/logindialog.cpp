#include <console/window/logindialog.h>

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace ZelkoConsole {
namespace {

constexpr int fieldCharacters = 32;

} // namespace

LoginDialog::LoginDialog(const QString& user, QWidget* parent)
    : QDialog(parent)
    , m_reason(new QLabel)
    , m_name(new QLineEdit(user))
    , m_password(new QLineEdit)
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel))
{
    setObjectName(QStringLiteral("loginDialog"));
    setWindowTitle(tr("Log In"));
    m_reason->setObjectName(QStringLiteral("reason"));
    m_reason->setTextFormat(Qt::PlainText); // it comes from the recorder
    m_reason->setWordWrap(true);
    m_reason->hide();
    m_name->setObjectName(QStringLiteral("userName"));
    m_name->setMinimumWidth(fieldCharacters * fontMetrics().averageCharWidth());
    m_password->setObjectName(QStringLiteral("password"));
    m_password->setEchoMode(QLineEdit::Password);
    m_buttons->button(QDialogButtonBox::Ok)->setText(tr("&Log In"));

    auto* const layout = new QFormLayout(this);
    layout->addRow(m_reason);
    layout->addRow(tr("&User:"), m_name);
    layout->addRow(tr("&Password:"), m_password);
    layout->addRow(m_buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(m_name, &QLineEdit::textChanged, this, &LoginDialog::updateButtons);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    (user.isEmpty() ? m_name : m_password)->setFocus();
    updateButtons();
}

LoginDialog::~LoginDialog() = default;

ZelkoCommon::LinkCredentials LoginDialog::credentials() const
{
    return {m_name->text().trimmed(), m_password->text()};
}

void LoginDialog::showReason(const QString& reason)
{
    m_reason->setText(tr("Access denied: %1.").arg(reason));
    m_reason->show();
}

void LoginDialog::updateButtons()
{
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!credentials().user.isEmpty());
}

} // namespace ZelkoConsole
