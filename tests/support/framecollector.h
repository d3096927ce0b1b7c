#pragma once

#include "frametext.h"

#include <recorder/link/linkedtree.h>

/// A subscriber that keeps the frames that it gets.
class FrameCollector final : public ZelkoRecorder::ILinkSubscriber
{
public:
    explicit FrameCollector(ZelkoRecorder::LinkedTree& tree)
        : m_tree(tree)
    {
        m_tree.add(this);
    }
    ~FrameCollector() override { m_tree.remove(this); }

    void frameCreated(const ZelkoRecorder::LinkBacklog::SharedFrame& frame) override { m_bytes += *frame; }

    /// The stream since the last call.
    std::string take() { return std::exchange(m_bytes, {}); }

    /// The same as texts.
    QStringList takeTexts() { return frameTexts(take()); }

private:
    ZelkoRecorder::LinkedTree& m_tree;
    std::string m_bytes;
};
