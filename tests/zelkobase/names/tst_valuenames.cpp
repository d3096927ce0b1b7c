#include <zelkobase/names/valuenames.h>

#include <QTest>

using namespace zelko;

class tst_ValueNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void areSpelledAsTheRecorderSpellsThem_data();
    void areSpelledAsTheRecorderSpellsThem();
    void joinWithOneSeparator_data();
    void joinWithOneSeparator();
    void makePaths_data();
    void makePaths();
};

void tst_ValueNames::areSpelledAsTheRecorderSpellsThem_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("spelling");
    QTest::newRow("/SubSystems/") << QString(names::subSystemsRoot) << "/SubSystems/";
    QTest::newRow("/ZELKO") << QString(names::zelko) << "/ZELKO";
    QTest::newRow("/ZELKO/Archive") << QString(names::zelkoArchive) << "/ZELKO/Archive";
    QTest::newRow("/ZELKO/Channel") << QString(names::zelkoChannel) << "/ZELKO/Channel";
    QTest::newRow("/ZELKO/Command") << QString(names::zelkoCommand) << "/ZELKO/Command";
    QTest::newRow("/ZELKO/Connection") << QString(names::zelkoConnection) << "/ZELKO/Connection";
    QTest::newRow("/ZELKO/Device") << QString(names::zelkoDevice) << "/ZELKO/Device";
    QTest::newRow("/ZELKO/Command/Export") << QString(names::zelkoCommandExport) << "/ZELKO/Command/Export";
    QTest::newRow("/ZELKO/Local") << QString(names::zelkoLocal) << "/ZELKO/Local";
    QTest::newRow("/ADMINISTRATION/ZELKOSERVER_ON_WORKSTATION")
        << QString(names::serverOnWorkstation) << "/ADMINISTRATION/ZELKOSERVER_ON_WORKSTATION";
    QTest::newRow("/Command") << QString(names::command) << "/Command";
    QTest::newRow("/Device") << QString(names::device) << "/Device";
    QTest::newRow("/Admin") << QString(names::admin) << "/Admin";
    QTest::newRow("/Status/Version") << QString(names::statusVersion) << "/Status/Version";
    QTest::newRow("/ZELKO/Channel/") << QString(names::zelkoChannelPrefix) << "/ZELKO/Channel/";
    QTest::newRow("/Records/Map") << QString(names::recordsMap) << "/Records/Map";
    QTest::newRow("/Records/LoadCount") << QString(names::recordsLoadCount) << "/Records/LoadCount";
    QTest::newRow("/Records/LoadedCompletly") << QString(names::recordsLoadedCompletly) << "/Records/LoadedCompletly";
    QTest::newRow("RemoteConfiguration") << QString(names::remoteConfiguration) << "RemoteConfiguration";
    QTest::newRow("AutoDeletionCounter") << QString(names::autoDeletionCounter) << "AutoDeletionCounter";
    QTest::newRow("AvailableDevices") << QString(names::availableDevices) << "AvailableDevices";
    QTest::newRow("Synchronize") << QString(names::synchronize) << "Synchronize";
    QTest::newRow("SyncOneRecord") << QString(names::syncOneRecord) << "SyncOneRecord";
    QTest::newRow("Extended") << QString(names::extended) << "Extended";
    QTest::newRow("IpAddress") << QString(names::ipAddress) << "IpAddress";
    QTest::newRow("DeleteRecordingList") << QString(names::deleteRecordingList) << "DeleteRecordingList";
    QTest::newRow("SetRecordIdle") << QString(names::setRecordIdle) << "SetRecordIdle";
    QTest::newRow("DeviceType") << QString(names::deviceType) << "DeviceType";
    QTest::newRow("SupportsXGInterface") << QString(names::supportsXGInterface) << "SupportsXGInterface";
    QTest::newRow("Reboot") << QString(names::reboot) << "Reboot";
    QTest::newRow("Shutdown") << QString(names::shutdown) << "Shutdown";
    QTest::newRow("Restart") << QString(names::restart) << "Restart";
    QTest::newRow("ZelkoAvailable") << QString(names::zelkoAvailable) << "ZelkoAvailable";
    QTest::newRow("FirmwareVersion") << QString(names::firmwareVersion) << "FirmwareVersion";
    QTest::newRow("CurrentID") << QString(names::currentId) << "CurrentID";
    QTest::newRow("Processed") << QString(names::processed) << "Processed";
    QTest::newRow("Total") << QString(names::total) << "Total";
    QTest::newRow("Pending") << QString(names::pending) << "Pending";
    QTest::newRow("CCOConnectionState") << QString(names::ccoConnectionState) << "CCOConnectionState";
    QTest::newRow("CCOConnectionResult") << QString(names::ccoConnectionResult) << "CCOConnectionResult";
    QTest::newRow("Bookmarks") << QString(names::bookmarks) << "Bookmarks";
    QTest::newRow("WaterfallTimestamp") << QString(names::waterfallTimestamp) << "WaterfallTimestamp";
    QTest::newRow("/Status") << QString(names::status) << "/Status";
    QTest::newRow("/Status/Archive") << QString(names::statusArchive) << "/Status/Archive";
    QTest::newRow("/Status/DiscSpace") << QString(names::statusDiscSpace) << "/Status/DiscSpace";
    QTest::newRow("/Status/DiscSpace/DSQualityIndex")
        << QString(names::statusDiscSpaceDSQualityIndex) << "/Status/DiscSpace/DSQualityIndex";
    QTest::newRow("/Status/DiscSpace/DSQualityStorage")
        << QString(names::statusDiscSpaceDSQualityStorage) << "/Status/DiscSpace/DSQualityStorage";
    QTest::newRow("/Status/AvailableDataRates")
        << QString(names::statusAvailableDataRates) << "/Status/AvailableDataRates";
    QTest::newRow("/Status/OccupiedDataRates")
        << QString(names::statusOccupiedDataRates) << "/Status/OccupiedDataRates";
    QTest::newRow("/Status/SupportedDataRates")
        << QString(names::statusSupportedDataRates) << "/Status/SupportedDataRates";
    QTest::newRow("/Bite") << QString(names::bite) << "/Bite";
    QTest::newRow("/Index") << QString(names::index) << "/Index";
    QTest::newRow("/ZELKO_Bite") << QString(names::zelkoBite) << "/ZELKO_Bite";
    QTest::newRow("/BiteCommand") << QString(names::biteCommand) << "/BiteCommand";
    QTest::newRow("/HealthState") << QString(names::healthState) << "/HealthState";
    QTest::newRow("/LocalBitTolerance") << QString(names::localBitTolerance) << "/LocalBitTolerance";
    QTest::newRow("/ArchiveAction") << QString(names::archiveAction) << "/ArchiveAction";
    QTest::newRow("/Archive") << QString(names::archive) << "/Archive";
    QTest::newRow("/ArchiveCommand") << QString(names::archiveCommand) << "/ArchiveCommand";
    QTest::newRow("/CurrentItem") << QString(names::currentItem) << "/CurrentItem";
    QTest::newRow("/ProcessedItem") << QString(names::processedItem) << "/ProcessedItem";
    QTest::newRow("/ArchvieCmdResult") << QString(names::archvieCmdResult) << "/ArchvieCmdResult";
    QTest::newRow("/CheckCorbaConnection") << QString(names::checkCorbaConnection) << "/CheckCorbaConnection";
    QTest::newRow("/Cmd") << QString(names::cmd) << "/Cmd";
    QTest::newRow("/Bit") << QString(names::bit) << "/Bit";
    QTest::newRow("/Dummy") << QString(names::dummy) << "/Dummy";
    QTest::newRow("/IdList") << QString(names::idList) << "/IdList";
    QTest::newRow("AddArchive") << QString(names::addArchive) << "AddArchive";
    QTest::newRow("CopyToArchive") << QString(names::copyToArchive) << "CopyToArchive";
    QTest::newRow("CopyFromArchive") << QString(names::copyFromArchive) << "CopyFromArchive";
    QTest::newRow("DeleteFromArchive") << QString(names::deleteFromArchive) << "DeleteFromArchive";
    QTest::newRow("FileSize") << QString(names::fileSize) << "FileSize";
    QTest::newRow("StartTime") << QString(names::startTime) << "StartTime";
    QTest::newRow("StopTime") << QString(names::stopTime) << "StopTime";
    QTest::newRow("StartPosition") << QString(names::startPosition) << "StartPosition";
    QTest::newRow("StopPosition") << QString(names::stopPosition) << "StopPosition";
    QTest::newRow("LoopSize") << QString(names::loopSize) << "LoopSize";
    QTest::newRow("RecordStatus") << QString(names::recordStatus) << "RecordStatus";
    QTest::newRow("DataRateClass") << QString(names::dataRateClass) << "DataRateClass";
    QTest::newRow("AllowedDevices") << QString(names::allowedDevices) << "AllowedDevices";
    QTest::newRow("ReplayDataRateClass") << QString(names::replayDataRateClass) << "ReplayDataRateClass";
    QTest::newRow("AvailableDataRateClass") << QString(names::availableDataRateClass) << "AvailableDataRateClass";
    QTest::newRow("AvailableDataRateClass2") << QString(names::availableDataRateClass2) << "AvailableDataRateClass2";
    QTest::newRow("DataFormat") << QString(names::dataFormat) << "DataFormat";
    QTest::newRow("IsDeletable") << QString(names::isDeletable) << "IsDeletable";
    QTest::newRow("RecordingSession") << QString(names::recordingSession) << "RecordingSession";
    QTest::newRow("ChannelName") << QString(names::channelName) << "ChannelName";
    QTest::newRow("RecordFlag") << QString(names::recordFlag) << "RecordFlag";
    QTest::newRow("ReplayFlag") << QString(names::replayFlag) << "ReplayFlag";
    QTest::newRow("RecordTimeout") << QString(names::recordTimeout) << "RecordTimeout";
    QTest::newRow("FileSizeInKB") << QString(names::fileSizeInKB) << "FileSizeInKB";
    QTest::newRow("ReplayBegin") << QString(names::replayBegin) << "ReplayBegin";
    QTest::newRow("ReplayEnd") << QString(names::replayEnd) << "ReplayEnd";
    QTest::newRow("CurrentReplayPosition") << QString(names::currentReplayPosition) << "CurrentReplayPosition";
    QTest::newRow("NoOfReplays") << QString(names::noOfReplays) << "NoOfReplays";
    QTest::newRow("DeviceID") << QString(names::deviceId) << "DeviceID";
    QTest::newRow("RecordName") << QString(names::recordName) << "RecordName";
    QTest::newRow("RecordID") << QString(names::recordId) << "RecordID";
    QTest::newRow("Duration") << QString(names::duration) << "Duration";
    QTest::newRow("TriggeredByCorbaCall") << QString(names::triggeredByCorbaCall) << "TriggeredByCorbaCall";
    QTest::newRow("RequestedSampleRate") << QString(names::requestedSampleRate) << "RequestedSampleRate";
    QTest::newRow("RequestedSampleSize") << QString(names::requestedSampleSize) << "RequestedSampleSize";
    QTest::newRow("RecordCounterStartTime") << QString(names::recordCounterStartTime) << "RecordCounterStartTime";
    QTest::newRow("RecordReplayModes") << QString(names::recordReplayModes) << "RecordReplayModes";
    QTest::newRow("AllRecordReplayModes") << QString(names::allRecordReplayModes) << "AllRecordReplayModes";
    QTest::newRow("ReplayMode") << QString(names::replayMode) << "ReplayMode";
    QTest::newRow("PauseSupported") << QString(names::pauseSupported) << "PauseSupported";
    QTest::newRow("IsVirtual") << QString(names::isVirtual) << "IsVirtual";
    QTest::newRow("ExtendedVersion") << QString(names::extendedVersion) << "ExtendedVersion";
    QTest::newRow("ErrorCode") << QString(names::errorCode) << "ErrorCode";
    QTest::newRow("GBTotal") << QString(names::gbTotal) << "GBTotal";
    QTest::newRow("GBAvailable") << QString(names::gbAvailable) << "GBAvailable";
    QTest::newRow("NoOfSessions") << QString(names::noOfSessions) << "NoOfSessions";
    QTest::newRow("DSQualityIndex") << QString(names::dsQualityIndex) << "DSQualityIndex";
    QTest::newRow("DSQualityStorage") << QString(names::dsQualityStorage) << "DSQualityStorage";
    QTest::newRow("DeviceInfo") << QString(names::deviceInfo) << "DeviceInfo";
    QTest::newRow("DeviceAddress") << QString(names::deviceAddress) << "DeviceAddress";
    QTest::newRow("DeviceName") << QString(names::deviceName) << "DeviceName";
    QTest::newRow("DeviceStatus") << QString(names::deviceStatus) << "DeviceStatus";
    QTest::newRow("ConfiguredDevices") << QString(names::configuredDevices) << "ConfiguredDevices";
    QTest::newRow("BelvoSWVersion") << QString(names::belvoSWVersion) << "BelvoSWVersion";
    QTest::newRow("AllRecordsHaveChanged") << QString(names::allRecordsHaveChanged) << "AllRecordsHaveChanged";
    QTest::newRow("OneRecordHasChanged") << QString(names::oneRecordHasChanged) << "OneRecordHasChanged";
}

void tst_ValueNames::areSpelledAsTheRecorderSpellsThem()
{
    QFETCH(QString, name);
    QTEST(name, "spelling");
}

void tst_ValueNames::joinWithOneSeparator_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("path without a last separator") << "/a/b";
    QTest::newRow("path with a last separator") << "/a/b/";
}

void tst_ValueNames::joinWithOneSeparator()
{
    QFETCH(QString, path);
    QCOMPARE(names::join(path, names::synchronize), QStringLiteral("/a/b/Synchronize"));
}

void tst_ValueNames::makePaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    const QString device("/SubSystems/north/ZELKO/Device/A1");
    const QString root("/SubSystems/north");
    QTest::newRow("record map") << names::recordMapPath(device) << device + "/Records/Map";
    QTest::newRow("load count") << names::loadCountPath(device) << device + "/Records/LoadCount";
    QTest::newRow("loaded completely") << names::loadedCompletlyPath(device) << device + "/Records/LoadedCompletly";
    QTest::newRow("device type") << names::adminPath(device, names::deviceType) << device + "/Admin/DeviceType";
    QTest::newRow("presence") << names::availablePath(device) << device + "/ZelkoAvailable";
    QTest::newRow("firmware") << names::versionPath(device, names::firmwareVersion)
                              << device + "/Status/Version/FirmwareVersion";
    QTest::newRow("device below a root") << names::devicePathBelowRoot(root, "A1") << device;
    QTest::newRow("reboot") << names::adminPath(names::devicePathBelowRoot(root, "A1"), names::reboot)
                            << device + "/Admin/Reboot";
    QTest::newRow("server command") << names::serverCommandPath(root, names::availableDevices)
                                    << root + "/ZELKO/Command/AvailableDevices";
    QTest::newRow("channel") << names::channelBasePath("/local") << "/local/ZELKO/Channel/";
    QTest::newRow("local values") << names::localValuesPath(root) << "/ZELKO/Local/SubSystems/north";
    QTest::newRow("error descriptor") << names::errorDescriptorPath("north") << "/SubSystems/north";
}

void tst_ValueNames::makePaths()
{
    QFETCH(QString, path);
    QTEST(path, "expected");
}

QTEST_GUILESS_MAIN(tst_ValueNames)
#include "tst_valuenames.moc"
