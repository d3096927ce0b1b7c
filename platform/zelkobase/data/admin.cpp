#include <zelkobase/data/admin.h>

#include <reportcore/fieldtable.h>

namespace ZELKO_XML {

RG_DEFINE_ENUM(Admin, HealthState, ZELKO_HEALTH_STATES)
RG_DEFINE_ENUM(Admin, RecordReplayMode, ZELKO_RECORD_REPLAY_MODES)
RG_DEFINE_ENUM(Admin, RecordReplayAllModes, ZELKO_RECORD_REPLAY_ALL_MODES)

} // namespace ZELKO_XML
