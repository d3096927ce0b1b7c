#include <recorder/store/recorderlog.h>

Q_LOGGING_CATEGORY(recorderLog, "zelko.recorder", QtInfoMsg)
