#include <console/window/logindialog.h>

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

namespace ZelkoConsole {
namespace {

constexpr int fieldCharacters = 32;

} // namespace

LoginDialog::LoginDialog(const QString& user, QWidget* parent)
    : QDialog(parent)
    , m_name(new QLineEdit(user))
    , m_password(new QLineEdit)
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel))
{
    setObjectName(QStringLiteral("loginDialog"));
    setWindowTitle(tr("Log In"));
    m_name->setObjectName(QStringLiteral("userName"));
    m_name->setMinimumWidth(fieldCharacters * fontMetrics().averageCharWidth());
    m_password->setObjectName(QStringLiteral("password"));
    m_password->setEchoMode(QLineEdit::Password);
    m_buttons->button(QDialogButtonBox::Ok)->setText(tr("&Log In"));

    auto* const layout = new QFormLayout(this);
    layout->addRow(tr("&User:"), m_name);
    layout->addRow(tr("&Password:"), m_password);
    layout->addRow(m_buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(m_name, &QLineEdit::textChanged, this, &LoginDialog::update);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    (user.isEmpty() ? m_name : m_password)->setFocus();
    update();
}

LoginDialog::~LoginDialog() = default;

ZelkoCommon::LinkCredentials LoginDialog::credentials() const
{
    return {m_name->text().trimmed(), m_password->text()};
}

void LoginDialog::update()
{
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!credentials().user.isEmpty());
}

} // namespace ZelkoConsole
