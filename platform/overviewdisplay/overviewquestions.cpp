#include "overviewquestions_p.h"

#include <overviewdisplay/spectrumoverviewwidget.h>

#include <vornappstartup/cfgcenter.h>

#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QInputDialog>
#include <QSaveFile>
#include <QStandardPaths>

namespace SPECTRUM_OVERVIEW {

namespace {

// File systems take 255 bytes, which the suffix and that of the temporary file have their part of.
constexpr qsizetype longestName = 240;
constexpr int shownCharacters = 60; // of what is typed; Qt has room for a word

// Names of records may hold anything; those of files may not.
QString fileNameFrom(const QString& text)
{
    QString name;
    qsizetype bytes = 0;
    for (const QChar character : text) {
        const bool isPlain = character.isLetterOrNumber() || QStringLiteral(" -_.").contains(character);
        const QChar taken = isPlain ? character : QLatin1Char('_');
        bytes += QString(taken).toUtf8().size();
        if (bytes > longestName) {
            break;
        }
        name.append(taken);
    }
    name = name.trimmed();
    return name.isEmpty() || name.startsWith(QLatin1Char('.')) ? QStringLiteral("overview") : name;
}

bool hasNativeDialogs()
{
    return CfgCenter::GetAppCfg(ICfg::ApplicationView)->GetBool(QStringLiteral("UseNativeDialogs"), true);
}

QString startOf(const QString& folder)
{
    return folder.isEmpty() || !QDir(folder).exists()
               ? QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)
               : folder;
}

} // namespace

void askText(QWidget* window, const QString& title, const QString& label, const QString& proposal,
             const std::function<void(const QString& text)>& taken)
{
    auto* const dialog = new QInputDialog(window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(title);
    dialog->setLabelText(label);
    dialog->setTextValue(proposal);
    dialog->resize(shownCharacters * dialog->fontMetrics().averageCharWidth(), dialog->sizeHint().height());
    QObject::connect(dialog, &QInputDialog::textValueSelected, window, taken);
    dialog->open();
}

void closeTextQuestions(QWidget& window)
{
    for (QInputDialog* const dialog : window.findChildren<QInputDialog*>(QString(), Qt::FindDirectChildrenOnly)) {
        dialog->close();
    }
}

void askPictureFile(QWidget* window, const QString& folder, const QString& proposal,
                    const std::function<void(const QString& fileName)>& taken)
{
    auto* const dialog = new QFileDialog(window, SpectrumOverviewWidget::tr("Save Picture"), startOf(folder));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QFileDialog::DontUseNativeDialog, !hasNativeDialogs());
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilter(SpectrumOverviewWidget::tr("Pictures (*.png)"));
    dialog->setDefaultSuffix(QStringLiteral("png"));
    dialog->selectFile(fileNameFrom(proposal) + QStringLiteral(".png"));
    QObject::connect(dialog, &QFileDialog::fileSelected, window, taken);
    dialog->open();
}

QString savePicture(const QImage& picture, const QString& fileName)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || !picture.save(&file, "PNG") || !file.commit()) {
        return QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(fileName), file.errorString());
    }
    return {};
}

} // namespace SPECTRUM_OVERVIEW
