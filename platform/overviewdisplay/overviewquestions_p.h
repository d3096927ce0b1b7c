#pragma once

#include <QString>

#include <functional>

class QImage;
class QWidget;

namespace SPECTRUM_OVERVIEW {

/// Asks for a text in a dialog in front of a window, which it goes with. Does not block: `taken` is called with the
/// text that the user takes, if he does.
void askText(QWidget* window, const QString& title, const QString& label, const QString& proposal,
             const std::function<void(const QString& text)>& taken);

/// Takes back those that a window has asked for a text, as if the user had.
void closeTextQuestions(QWidget& window);

/// Asks for a file to save a PNG picture in; whether it may replace another one is asked as well. `proposal` is a
/// name for people, or empty; `folder` where to begin, empty: wherever the user keeps pictures.
void askPictureFile(QWidget* window, const QString& folder, const QString& proposal,
                    const std::function<void(const QString& fileName)>& taken);

/// Saves a picture as PNG. What is wrong, for people; empty if it was saved. The file is the old one then, or none.
QString savePicture(const QImage& picture, const QString& fileName);

} // namespace SPECTRUM_OVERVIEW
