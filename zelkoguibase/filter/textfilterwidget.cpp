#include <zelkoguibase/filter/textfilterwidget.h>

#include "framedcheckbox_p.h"

#include <zelkoguibase/filter/lineeditex.h>
#include <zelkoguibase/filter/stringfiltercondition.h>

#include <QComboBox>
#include <QHBoxLayout>
#include <QPointer>
#include <QPushButton>

#include <algorithm>

namespace ZelkoGUI::Filter {
namespace {

using Syntax = QPair<QString, QRegExp::PatternSyntax>;

const QList<Syntax>& syntaxes()
{
    static const QList<Syntax> all{{TextFilterWidget::tr("Fixed String"), QRegExp::FixedString},
                                   {TextFilterWidget::tr("Wildcard"), QRegExp::Wildcard},
                                   {TextFilterWidget::tr("Regular Expression"), QRegExp::RegExp}};
    return all;
}

/// -1 for one that users cannot choose.
int indexOf(QRegExp::PatternSyntax wanted)
{
    const auto found = std::find_if(syntaxes().begin(), syntaxes().end(),
                                    [wanted](const Syntax& syntax) { return syntax.second == wanted; });
    return found == syntaxes().end() ? -1 : static_cast<int>(found - syntaxes().begin());
}

QPushButton* makeResetButton(QWidget* parent)
{
    auto* const button = new QPushButton(parent);
    button->setObjectName(QStringLiteral("ResetFilterButton"));
    button->setFlat(true);
    button->setIcon(QIcon(QStringLiteral(":/Filter/Icons/Reset.svg")));
    button->setToolTip(TextFilterWidget::tr("Reset Filter"));
    button->setAccessibleName(button->toolTip());
    return button;
}

TextFilterWidget::LineEditEx* makeTextEdit(QWidget* parent)
{
    auto* const edit =
        new TextFilterWidget::LineEditEx(TextFilterWidget::tr("enter the text to search for..."), parent);
    edit->setObjectName(QStringLiteral("TextEdit"));
    edit->setAccessibleName(TextFilterWidget::tr("Text to search for"));
    return edit;
}

QComboBox* makeSyntaxBox(QWidget* parent)
{
    auto* const box = new QComboBox(parent);
    box->setObjectName(QStringLiteral("PatternSyntaxCombobox"));
    box->setAccessibleName(TextFilterWidget::tr("Syntax of the text"));
    for (const Syntax& syntax : syntaxes()) {
        box->addItem(syntax.first);
    }
    return box;
}

QCheckBox* makeCaseCheck(QWidget* parent)
{
    auto* const check = new FramedCheckBox(TextFilterWidget::tr("Case Sensitive"), parent);
    check->setObjectName(QStringLiteral("CaseSensitiveCheckbox"));
    return check;
}

} // namespace

class TextFilterWidget::Private
{
public:
    Private(StringFilterCondition* given, QWidget* parent)
        : condition(given)
        , resetButton(makeResetButton(parent))
        , textEdit(makeTextEdit(parent))
        , syntaxBox(makeSyntaxBox(parent))
        , caseCheck(makeCaseCheck(parent))
    {}

    void allowReset(const QString& pattern) { resetButton->setEnabled(!pattern.isEmpty()); }

    const QPointer<StringFilterCondition> condition;
    QPushButton* const resetButton;
    LineEditEx* const textEdit;
    QComboBox* const syntaxBox;
    QCheckBox* const caseCheck;
};

TextFilterWidget::TextFilterWidget(StringFilterCondition* condition, QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(condition, this))
{
    setObjectName(QStringLiteral("TextFilterWidget"));
    auto* const row = new QHBoxLayout(this);
    for (QWidget* const child : {static_cast<QWidget*>(d->resetButton), static_cast<QWidget*>(d->textEdit),
                                 static_cast<QWidget*>(d->syntaxBox), static_cast<QWidget*>(d->caseCheck)}) {
        row->addWidget(child);
    }
    connectChildren();
    prepareCondition();
}

TextFilterWidget::~TextFilterWidget() = default;

void TextFilterWidget::removeMargins()
{
    layout()->setContentsMargins({});
}

void TextFilterWidget::connectChildren()
{
    connect(d->textEdit, &QLineEdit::textEdited, this, &TextFilterWidget::sl_textChanged);
    connect(this, &TextFilterWidget::si_setText, d->textEdit, &LineEditEx::setText);
    connect(d->resetButton, &QPushButton::clicked, this, &TextFilterWidget::sl_resetFilter);
    connect(d->resetButton, &QPushButton::clicked, d->textEdit, &LineEditEx::resetText);
    connect(d->syntaxBox, &QComboBox::currentIndexChanged, this, &TextFilterWidget::sl_patternSyntaxChanged);
    connect(this, &TextFilterWidget::si_setPatternSyntax, d->syntaxBox, &QComboBox::setCurrentIndex);
    connect(d->caseCheck, &QCheckBox::toggled, this, &TextFilterWidget::sl_matchCaseChanged);
    connect(this, &TextFilterWidget::si_setMatchCase, d->caseCheck, &QCheckBox::setChecked);
}

// It is switched off for that long, so that rows are not filtered once per property. Whoever is told that it is on
// again may drop it.
void TextFilterWidget::prepareCondition()
{
    if (d->condition) {
        d->condition->setEnabled(false);
    }
    sl_matchCaseChanged(d->caseCheck->isChecked());
    sl_textChanged(d->textEdit->realText());
    sl_patternSyntaxChanged(d->syntaxBox->currentIndex());
    if (d->condition) {
        d->condition->setEnabled(true);
    }
    if (d->condition) {
        connect(d->condition, &AbstractFilterCondition::si_filterContentChanged, this,
                &TextFilterWidget::sl_filterContentChanged);
    }
}

void TextFilterWidget::sl_textChanged(const QString& text)
{
    if (d->condition) {
        d->condition->setPattern(text);
    }
    d->allowReset(text);
}

void TextFilterWidget::sl_matchCaseChanged(bool on)
{
    if (d->condition) {
        d->condition->setCaseSensitivity(on ? Qt::CaseSensitive : Qt::CaseInsensitive);
    }
}

void TextFilterWidget::sl_patternSyntaxChanged(int index)
{
    if (d->condition && index >= 0 && index < syntaxes().size()) {
        d->condition->setPatternSyntax(syntaxes()[index].second);
    }
}

void TextFilterWidget::sl_resetFilter()
{
    sl_textChanged(QString());
}

void TextFilterWidget::resetFilter()
{
    sl_resetFilter();
    Q_EMIT si_setText(d->condition ? d->condition->pattern() : QString());
}

// What the children answer to this is what the condition has already, so nothing is filtered again. Whoever else is
// told may drop the condition, so it is asked for everything before.
void TextFilterWidget::sl_filterContentChanged()
{
    if (!d->condition) {
        return;
    }
    const QString pattern = d->condition->pattern();
    const bool matchCase = d->condition->caseSensitive() == Qt::CaseSensitive;
    const int syntax = indexOf(d->condition->patternSyntax());
    const bool enabled = d->condition->enabled();
    d->allowReset(pattern);
    Q_EMIT si_setText(pattern);
    Q_EMIT si_setMatchCase(matchCase);
    if (syntax >= 0) {
        Q_EMIT si_setPatternSyntax(syntax);
    }
    setEnabled(enabled);
}

} // namespace ZelkoGUI::Filter
