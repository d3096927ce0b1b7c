#pragma once

#include <QLoggingCategory>

/// What the recorder tells whoever runs it.
Q_DECLARE_LOGGING_CATEGORY(recorderLog)
