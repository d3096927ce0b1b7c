#include <console/demo/paintedrecords.h>

#include <valuecore/tree.h>

namespace ZelkoConsole {
namespace {

using zelko::recordmap::RecordItemMap;

constexpr auto branch = QLatin1String("/Painted");

} // namespace

PaintedRecords::PaintedRecords()
    : m_map(
          *Tree::Instance()->Emplace(branch, std::make_unique<RecordItemMap>(QStringLiteral("Map"), TValueState::Open)))
    , m_model(nullptr)
{
    m_model.connect(branch + QStringLiteral("/Map"));
}

PaintedRecords::~PaintedRecords()
{
    Tree::Instance()->Remove(branch);
}

void PaintedRecords::store(const std::shared_ptr<ZELKO_XML::ZELKO_RecordData>& record)
{
    m_map.Add(zelko::recordmap::RecordMapData(record), nullptr);
}

void PaintedRecords::remove(const QString& id)
{
    m_map.EraseAt(id, nullptr);
}

} // namespace ZelkoConsole
