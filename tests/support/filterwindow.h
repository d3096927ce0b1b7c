#pragma once

#include "editorhands.h"
#include "fixedrecordmodel.h"
#include "patience.h"

#include <console/hands/dialoganswer.h>
#include <resources/zelkoicons.h>
#include <zelkobase/data/filterconditionlist.h>
#include <zelkoguibase/filter/extendedfilterdialog.h>
#include <zelkoguibase/filter/multifiltersortproxymodel.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QTextDocumentFragment>
#include <QtTest>

#include <functional>
#include <memory>

/// What an operator sees of the extended filter window, and does in it with mouse and keys.
class FilterWindow
{
public:
    using Dialog = ZelkoGUI::Filter::ExtendedFilterDialog;
    using Condition = ZelkoGUI::Filter::AbstractFilterCondition;
    using Columns = QFlags<Dialog::enFilterColumn>;

    static Columns allColumns() { return Columns(0x3FFF); }

    /// Opens the window over a list of records, after `prepare` was done to it, and waits until the lists of values are
    /// loaded.
    explicit FilterWindow(
        Columns columns = allColumns(), FixedRecordModel::Rows records = {},
        const std::function<void(Dialog&)>& prepare = [](Dialog&) {})
        : m_records(std::move(records))
        , m_proxy(std::make_unique<ZelkoGUI::Filter::MultiFilterSortProxyModel>(nullptr))
    {
        registerZelkoIcons();
        m_proxy->setSourceModel(&m_records);
        m_dialog = std::make_unique<Dialog>(m_proxy.get(), columns, nullptr);
        prepare(*m_dialog);
        m_dialog->show();
        m_dialog->activateWindow();
        [this] { QTRY_VERIFY_WITH_TIMEOUT(m_dialog->isActiveWindow() && !m_dialog->hasActiveFilter(), patience); }();
    }

    Dialog& dialog() { return *m_dialog; }
    void closeForGood() { m_dialog.reset(); }
    void dropProxy() { m_proxy.reset(); }

    /// The IDs of the records that pass, in order.
    QStringList shownRecords() const
    {
        QStringList ids;
        for (int row = 0; row < m_proxy->rowCount(); ++row) {
            ids << m_proxy->index(row, FixedRecordModel::RecordIDColumn).data().toString();
        }
        return ids;
    }

    template <typename C = Condition>
    C* condition(const QString& name) const
    {
        return dynamic_cast<C*>(m_proxy->findChild<Condition*>(name));
    }

    QWidget* editor(const QString& name) const { return m_dialog->findChild<QWidget*>(name); }
    QPushButton* button(const QString& name) const { return m_dialog->findChild<QPushButton*>(name); }
    bool canReset() const { return button(QStringLiteral("ResetAllFilterButton"))->isEnabled(); }

    /// The rows, and the widget of one of them: a label or an editor.
    QFormLayout* form() const { return qobject_cast<QFormLayout*>(m_dialog->layout()->itemAt(0)->layout()); }
    QWidget* cell(int row, QFormLayout::ItemRole role) const { return form()->itemAt(row, role)->widget(); }

    /// The names of the conditions, in order; empty for those that were deleted.
    QStringList conditionNames() const
    {
        QStringList names;
        for (const auto& condition : m_dialog->filters()) {
            names << (condition ? condition->objectName() : QString());
        }
        return names;
    }

    /// A child of the editor of a row.
    template <typename W>
    W* part(const QString& editorName, const QString& name) const
    {
        return &editorhands::part<W>(*editor(editorName), name);
    }

    void press(const QString& buttonName) const { QTest::mouseClick(button(buttonName), Qt::LeftButton); }
    void resetAll() const { press(QStringLiteral("ResetAllFilterButton")); }

    void check(const QString& editorName, const QString& name) const
    {
        editorhands::click(*part<QCheckBox>(editorName, name));
    }

    /// Types into a field in place of what stands there; dates and times as mere digits. Whoever comes to a field by
    /// the Tab key has its content, or its first part, selected.
    void type(const QString& editorName, const QString& name, const QString& text) const
    {
        auto* const field = part<QWidget>(editorName, name);
        field->clearFocus();
        field->setFocus(Qt::TabFocusReason);
        QTest::keyClicks(field, text);
    }

    void choose(const QString& editorName, const QString& name, const QString& entry) const
    {
        auto* const box = part<QComboBox>(editorName, name);
        editorhands::choose(*box, box->findText(entry));
        QCOMPARE(box->currentText(), entry);
    }

    /// Opens the list of the values of an enumeration.
    QListView* openValues(const QString& editorName) const
    {
        QTest::mouseClick(part<QPushButton>(editorName, QStringLiteral("SelectButton")), Qt::LeftButton);
        return editorhands::openList();
    }

    /// Clicks on values of an enumeration, and closes their list.
    void toggleValues(const QString& editorName, const QStringList& words) const
    {
        const QPointer<QListView> list = openValues(editorName);
        QVERIFY(list);
        for (int row = 0; row < list->model()->rowCount(); ++row) {
            const QModelIndex index = list->model()->index(row, 0);
            if (words.contains(index.data().toString())) {
                list->scrollTo(index);
                QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(index).center());
            }
        }
        list->close();
        QTRY_VERIFY_WITH_TIMEOUT(!list, patience);
    }

    /// Saves or restores under that name; the warning that follows, null if there is none.
    QString saveAs(const QString& fileName) { return useFile(QStringLiteral("SaveFilterButton"), fileName); }
    QString restoreFrom(const QString& fileName) { return useFile(QStringLiteral("RestoreFilterButton"), fileName); }

    /// Chooses a file in the dialog behind that button, and drops the window before the dialog has returned.
    void goWhileChoosing(const QString& buttonName, const QString& fileName)
    {
        const ZelkoConsole::DialogAnswer onFileDialog([&](QWidget* window) {
            enter(window, fileName);
            acceptFile(window);
            window->setParent(nullptr); // or it would be cancelled, going with the window
            closeForGood();
        });
        press(buttonName);
        [&] { QVERIFY(onFileDialog.wasGiven()); }();
    }

    /// The warning box that was shown last, while it was open.
    struct Warning
    {
        QString title;
        QString text;
        QString reason; ///< below the text
        QWidget* parent = nullptr;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        QMessageBox::StandardButtons buttons;
        Qt::TextFormat format = Qt::AutoText;
    };
    const Warning& lastWarning() const { return m_warning; }

    /// What the conditions hold, by their names; the same for equal states.
    QMap<QString, QString> state() const
    {
        QMap<QString, QString> texts;
        for (const auto& condition : m_dialog->filters()) {
            if (condition) {
                texts[condition->objectName()] = stateOf(*condition);
            }
        }
        return texts;
    }

private:
    static QString stateOf(const Condition& condition)
    {
        ZELKO_XML::FilterConditionList list;
        condition.writeToXml(list);
        ZELKO_XML::FilterCondition entry = list.GetFilterCondition().constFirst();
        if (entry.IsEnumFilterSet()) {
            QVector<int> values = entry.GetEnumFilter().GetEnumValue();
            std::sort(values.begin(), values.end());
            entry.GetEnumFilter().SetEnumValue(values);
        }
        return entry.GetXmlString();
    }

    // The warning can come as soon as the file dialog is gone.
    QString useFile(const QString& buttonName, const QString& fileName)
    {
        m_warning = {};
        std::unique_ptr<ZelkoConsole::DialogAnswer> onWarning;
        const ZelkoConsole::DialogAnswer onFileDialog([&](QWidget* window) {
            enter(window, fileName);
            onWarning = std::make_unique<ZelkoConsole::DialogAnswer>([this](QWidget* box) { note(box); });
            acceptFile(window);
        });
        press(buttonName);
        [&] { QVERIFY(onFileDialog.wasGiven()); }();
        return m_warning.text;
    }

    // Not typed: what the file dialog suggests meanwhile comes at its own time, and gets in the way of keys.
    static void enter(QWidget* fileDialog, const QString& fileName)
    {
        auto* const edit = fileDialog->findChild<QLineEdit*>();
        QVERIFY(edit);
        edit->setText(fileName);
    }

    static void acceptFile(QWidget* fileDialog)
    {
        const auto* const box = fileDialog->findChild<QDialogButtonBox*>();
        auto* const save = box->button(QDialogButtonBox::Save);
        QTest::mouseClick(save ? save : box->button(QDialogButtonBox::Open), Qt::LeftButton);
    }

    void note(QWidget* window)
    {
        auto* const box = qobject_cast<QMessageBox*>(window);
        QVERIFY(box);
        const QString reason = QTextDocumentFragment::fromHtml(box->informativeText()).toPlainText();
        m_warning = {box->windowTitle(),     box->text(),      reason, box->parentWidget(), box->icon(),
                     box->standardButtons(), box->textFormat()};
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    }

    FixedRecordModel m_records;
    std::unique_ptr<ZelkoGUI::Filter::MultiFilterSortProxyModel> m_proxy;
    std::unique_ptr<Dialog> m_dialog;
    Warning m_warning;
};
