// What a recorder delivers on the tree link, applied by the client's mirror. However the stream is cut into batches,
// the same tree comes of it, and nothing of it is left once the mirror is cleared. The first byte says how long the
// batches are, and by its highest bit whether the rest is a script or the stream itself.
#include "framescript.h"
#include "require.h"
#include "treedigest.h"

#include <zelkobase/connection/treemirror.h>
#include <zelkobase/maps/itemmaptypes.h>
#include <zelkobase/stringmap/stringitemmap.h>

#include <valuecore/node.h>
#include <valuecore/tree.h>

using namespace std::chrono_literals;
using ZelkoCommon::TreeMirror;
using Progress = TreeMirror::Progress;

namespace {

const QString root = QStringLiteral("/SubSystems/north");

struct Client
{
    Tree tree;
    QStringList log;
    TreeMirror mirror{&tree,
                      root,
                      nullptr,
                      {[this] { log << QStringLiteral("ready"); }, [this](const QString& path) { log << path; }}};

    Progress take(std::string_view stream, std::size_t batchSize)
    {
        while (!stream.empty()) {
            mirror.append(std::string(stream.substr(0, batchSize)));
            stream.remove_prefix(std::min(batchSize, stream.size()));
        }
        return mirror.apply(1h);
    }

    // In batches, and in slices without time.
    Progress takeSlowly(std::string_view stream, std::size_t batchSize)
    {
        Progress progress = Progress::Idle;
        while (!stream.empty() && progress != Progress::Malformed) {
            mirror.append(std::string(stream.substr(0, batchSize)));
            stream.remove_prefix(std::min(batchSize, stream.size()));
            do {
                progress = mirror.apply(0us);
            } while (progress == Progress::MoreToDo);
        }
        return progress;
    }
};

// Nodes stay where a value came without those above it.
bool holdsValues(const Node& node)
{
    const auto items = node.GetTreeItems();
    return std::any_of(items.begin(), items.end(), [](TreeItem* item) {
        const auto* const below = dynamic_cast<const Node*>(item);
        return below == nullptr || holdsValues(*below);
    });
}

void requireUsable(Client& client)
{
    client.mirror.clear();
    require(!holdsValues(*client.tree.GetRoot()) && client.mirror.pendingBytes() == 0);
    std::string stream;
    ZelkoCommon::link::appendFrame(stream, ZelkoCommon::link::FrameType::StateBegin, 0);
    ZelkoCommon::link::appendAnnouncement(stream, 1, {QStringLiteral("/Fresh"), "Integer"});
    require(client.take(stream, stream.size()) == Progress::Idle && client.mirror.pendingBytes() == 0);
    require(client.tree.GetItem(root + QStringLiteral("/Fresh")) != nullptr);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    zelko::registerItemMapTypes();
    registerStringItemMap();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const std::string_view input(reinterpret_cast<const char*>(data + 1), size - 1);
    const bool isScript = data[0] < 128;
    const std::string stream = isScript ? FrameScript(input).frames() : std::string(input);

    Client whole;
    Client cut;
    const Progress progress = whole.take(stream, stream.size());
    require(progress == cut.takeSlowly(stream, 1U + data[0] % 128U));
    require(whole.log == cut.log && treeList(whole.tree) == treeList(cut.tree));
    requireUsable(whole);
    requireUsable(cut);
    return 0;
}
