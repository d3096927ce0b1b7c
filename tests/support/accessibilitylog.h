#pragma once

#include <QStringList>

class QObject;

/// What programs that read the screen are told of one object from here on, as lines of what they find there then: of a
/// new value its text, of a new description that. One such log at a time.
///
/// It hears what Qt hands to such programs, by way of a bridge that comes with it.
class AccessibilityLog
{
public:
    explicit AccessibilityLog(QObject& object);
    ~AccessibilityLog();
    AccessibilityLog(const AccessibilityLog&) = delete;
    AccessibilityLog& operator=(const AccessibilityLog&) = delete;

    /// What has been told since this was called last.
    QStringList take();
};
