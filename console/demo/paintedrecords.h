#pragma once

#include <zelkobase/maps/recorditemmap.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <memory>

namespace ZelkoConsole {

/// The records of a device that are put there by hand, for pictures; none at first. One of these at a time.
class PaintedRecords
{
public:
    PaintedRecords();
    ~PaintedRecords();
    PaintedRecords(const PaintedRecords&) = delete;
    PaintedRecords& operator=(const PaintedRecords&) = delete;

    ZelkoGUI::RecordItemMapModel* model() { return &m_model; }

    /// Adds it, or has it in place of the one with its ID.
    void store(const std::shared_ptr<ZELKO_XML::ZELKO_RecordData>& record);
    void remove(const QString& id);

private:
    zelko::recordmap::RecordItemMap& m_map;
    ZelkoGUI::RecordItemMapModel m_model;
};

} // namespace ZelkoConsole
