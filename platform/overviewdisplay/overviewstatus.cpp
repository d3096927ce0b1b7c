#include "overviewstatus_p.h"

#include "overviewsession_p.h"

#include <widgetbase/elidedlabel.h>
#include <zelkobase/models/unittext.h>

#include <QHBoxLayout>
#include <QProgressBar>

namespace SPECTRUM_OVERVIEW {

using State = OverviewLoader::State;

namespace {

QString completeText(const OverviewLevels& levels)
{
    const quint64 line = (levels.wish().stop - levels.wish().start) / static_cast<quint64>(levels.lineCount());
    return OverviewStatus::tr("%1 lines, each of %2")
        .arg(levels.lineCount())
        .arg(ZelkoCommon::unittext::duration(line));
}

QString loaderText(const OverviewLoader& loader)
{
    const OverviewLevels& levels = loader.levels();
    switch (loader.state()) {
    case State::Idle:
        return {};
    case State::Waiting:
        return OverviewStatus::tr("Waiting for the recorder...");
    case State::Arriving:
        return OverviewStatus::tr("%1 of %2 lines").arg(levels.completeLines()).arg(levels.lineCount());
    case State::Complete:
        return completeText(levels);
    case State::Incomplete:
        return OverviewStatus::tr("%1 of %2 lines have not come. \"Ask Again\" asks for all of them once more.")
            .arg(levels.lineCount() - levels.completeLines())
            .arg(levels.lineCount());
    case State::Silent:
        return OverviewStatus::tr(
            "The recorder has sent nothing: it may be busy, or refuse. \"Ask Again\" asks it once more.");
    case State::NoPort:
        return OverviewStatus::tr("This computer has no port to receive spectra at.");
    }
    return {};
}

} // namespace

OverviewStatus::OverviewStatus(QWidget* parent)
    : QWidget(parent)
    , m_text(new guiHelper::ElidedLabel(QString(), this))
    , m_cursor(new guiHelper::ElidedLabel(QString(), this))
    , m_progress(new QProgressBar(this))
{
    m_text->setObjectName(QStringLiteral("StatusLabel"));
    m_cursor->setObjectName(QStringLiteral("CursorLabel"));
    m_cursor->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_progress->setObjectName(QStringLiteral("ProgressBar"));
    m_progress->setAccessibleName(tr("Lines received"));
    QSizePolicy policy = m_progress->sizePolicy();
    policy.setRetainSizeWhenHidden(true); // or the picture would change its size at the end
    m_progress->setSizePolicy(policy);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_progress);
    layout->addWidget(m_cursor, 1);
}

OverviewStatus::~OverviewStatus() = default;

void OverviewStatus::showSession(const OverviewSession& session)
{
    const QString problem = session.problem();
    const QString loaded = loaderText(session.loader());
    m_text->setText(problem.isEmpty() ? loaded : problem);
    showProgress(session);
}

QString OverviewStatus::text() const
{
    return m_text->text();
}

void OverviewStatus::showProgress(const OverviewSession& session)
{
    const OverviewLevels& levels = session.loader().levels();
    m_progress->setVisible(session.loader().isLoading());
    m_progress->setRange(0, levels.lineCount()); // 0 lines: busy
    m_progress->setValue(levels.completeLines());
}

void OverviewStatus::showCursor(const QString& text)
{
    m_cursor->setText(text);
}

} // namespace SPECTRUM_OVERVIEW
