#pragma once

#include <QString>
#include <QStringList>

namespace ZelkoConsole {

class ScenePainter;

/// The capabilities of which there are pictures.
QStringList paintedCapabilities();

/// Writes a picture of each window and widget of a capability into `folder`, named SCENE-`variant`.png, in the
/// application's present look. The names of the files written; empty when one could not be, and for an unknown
/// capability.
QStringList paintScenes(const QString& capability, const QString& folder, const QString& variant);

/// The console with its record list: live, loading, narrow, with long names, empty.
void paintSpineScenes(ScenePainter& painter);

/// What can be done to recordings: menus, tool bar, dialogs and messages, for users who may and who may not.
void paintActionScenes(ScenePainter& painter);

/// What the windows stand on: the replay bar, an editor of a moment, a sort list, the icons.
void paintPlatformScenes(ScenePainter& painter);

/// Lists of records and what finds one in them: a list that an application fills, the search field, marked rows, the
/// time of a bookmark, and the editors of filters.
void paintListScenes(ScenePainter& painter);

/// The editors of filters, at rest and in use, and the list in which values are chosen.
void paintFilterEditorScenes(ScenePainter& painter);

/// The window of the extended filter, at rest and with filters.
void paintExtendedFilterScenes(ScenePainter& painter);

/// The record list with all its parts, by itself and in the console: selected, filtered, and all of it filtered out.
void paintRecordListScenes(ScenePainter& painter);

/// Channels, devices and replays: the device to work on, by itself and in the console.
void paintReplayScenes(ScenePainter& painter);

/// The console with a channel: at rest, recording, replaying, out of reach; and without one.
void paintReplayConsoleScenes(ScenePainter& painter);

/// The replay bar at three widths with none, few and many bookmarks, and in use.
void paintReplayBarScenes(ScenePainter& painter);

/// The replay bar of a record with its buttons: in step with the recorder, and not.
void paintReplayWidgetScenes(ScenePainter& painter);

/// The windows on a record: its comments, its bookmarks, a copy of a part of it.
void paintRecordWindowScenes(ScenePainter& painter);

/// The spectra of a recording: in use, as they arrive, of a moment and of days.
void paintWaterfallScenes(ScenePainter& painter);

/// The window of an overview: in use, as lines arrive, without any, and the question that it asks.
void paintOverviewScenes(ScenePainter& painter);

} // namespace ZelkoConsole
