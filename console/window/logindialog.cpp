#include <console/window/logindialog.h>

#include <console/widgets/glyph.h>

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>

namespace ZelkoConsole {
namespace {

constexpr int fieldCharacters = 32;

} // namespace

LoginDialog::LoginDialog(const QString& user, QWidget* parent)
    : QDialog(parent)
    , m_reasonRow(new QWidget)
    , m_reason(new QLabel)
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
    layout->addRow(makeReasonRow());
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

QWidget* LoginDialog::makeReasonRow()
{
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    auto* const sign = new QLabel;
    sign->setPixmap(glyphIcon(Glyph::Locked).pixmap(QSize(side, side), devicePixelRatio()));
    m_reason->setObjectName(QStringLiteral("reason"));
    m_reason->setTextFormat(Qt::PlainText); // it comes from the recorder
    m_reason->setWordWrap(true);

    auto* const layout = new QHBoxLayout(m_reasonRow);
    layout->setContentsMargins(0, 0, 0, side / 2);
    layout->addWidget(sign, 0, Qt::AlignTop);
    layout->addWidget(m_reason, 1);
    m_reasonRow->hide();
    return m_reasonRow;
}

ZelkoCommon::LinkCredentials LoginDialog::credentials() const
{
    return {m_name->text().trimmed(), m_password->text()};
}

void LoginDialog::showReason(const QString& reason)
{
    m_reason->setText(tr("Access denied: %1.").arg(reason));
    m_reasonRow->show();
}

void LoginDialog::updateButtons()
{
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!credentials().user.isEmpty());
}

} // namespace ZelkoConsole
