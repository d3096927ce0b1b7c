#pragma once

#include <QLatin1String>
#include <QString>

/// The names of the recorder's value tree, in one place and spelled as the recorder spells them. Names that begin with
/// "/" are pieces of paths, to be joined as they are; the others are names of items, which `join` puts behind a path.
namespace zelko::names {

/// @name Roots and the branches of a recorder, from the root path of a sub system on
/// A sub system's root path is given by its configuration.
/// @{
inline constexpr QLatin1String
    subSystemsRoot("/SubSystems/");             ///< the error descriptor of a sub system stands at this + its name
inline constexpr QLatin1String zelko("/ZELKO"); ///< the recorder's branch
inline constexpr QLatin1String zelkoArchive("/ZELKO/Archive");
inline constexpr QLatin1String zelkoChannel("/ZELKO/Channel");
inline constexpr QLatin1String zelkoCommand("/ZELKO/Command");
inline constexpr QLatin1String zelkoConnection("/ZELKO/Connection");
inline constexpr QLatin1String zelkoDevice("/ZELKO/Device");
inline constexpr QLatin1String zelkoCommandExport("/ZELKO/Command/Export");
inline constexpr QLatin1String zelkoLocal("/ZELKO/Local");
inline constexpr QLatin1String serverOnWorkstation(
    "/ADMINISTRATION/ZELKOSERVER_ON_WORKSTATION"); ///< the server that runs on the workstation itself
/// @}

/// @name Pieces that are joined to the paths of branches and devices
/// @{
inline constexpr QLatin1String command("/Command");
inline constexpr QLatin1String device("/Device");
inline constexpr QLatin1String admin("/Admin");
inline constexpr QLatin1String statusVersion("/Status/Version");
inline constexpr QLatin1String zelkoChannelPrefix("/ZELKO/Channel/"); ///< behind the base path of the local values
/// @}

/// @name Records of a device, behind its base path
/// @{
inline constexpr QLatin1String recordsMap("/Records/Map");             ///< the record map
inline constexpr QLatin1String recordsLoadCount("/Records/LoadCount"); ///< how many records are loaded
inline constexpr QLatin1String
    recordsLoadedCompletly("/Records/LoadedCompletly"); ///< whether the first load is over; spelled so
/// @}

/// @name Command values of a sub system's server
/// @{
inline constexpr QLatin1String remoteConfiguration("RemoteConfiguration");
inline constexpr QLatin1String autoDeletionCounter("AutoDeletionCounter");
inline constexpr QLatin1String availableDevices("AvailableDevices");
/// @}

/// @name Command values of a device
/// @{
inline constexpr QLatin1String synchronize("Synchronize");
inline constexpr QLatin1String syncOneRecord("SyncOneRecord");
inline constexpr QLatin1String extended("Extended");
inline constexpr QLatin1String ipAddress("IpAddress"); ///< also among the administration values
inline constexpr QLatin1String deleteRecordingList("DeleteRecordingList");
inline constexpr QLatin1String setRecordIdle("SetRecordIdle");
/// @}

/// @name Administration, presence and version of a device
/// @{
inline constexpr QLatin1String deviceType("DeviceType");
inline constexpr QLatin1String supportsXGInterface("SupportsXGInterface");
inline constexpr QLatin1String reboot("Reboot");
inline constexpr QLatin1String shutdown("Shutdown");
inline constexpr QLatin1String restart("Restart");
inline constexpr QLatin1String zelkoAvailable("ZelkoAvailable");
inline constexpr QLatin1String firmwareVersion("FirmwareVersion");
/// @}

/// @name Values of the export client's branch
/// @{
inline constexpr QLatin1String currentId("CurrentID");
inline constexpr QLatin1String processed("Processed");
inline constexpr QLatin1String total("Total");
inline constexpr QLatin1String pending("Pending");
/// @}

/// @name Values of the workstation itself, which stand beside "AvailableDevices" and "DeviceID"
/// @{
inline constexpr QLatin1String ccoConnectionState("CCOConnectionState");
inline constexpr QLatin1String ccoConnectionResult("CCOConnectionResult");
inline constexpr QLatin1String waterfallTimestamp("WaterfallTimestamp");
/// @}

/// @name Further pieces of the recorder's tree that no client of ours reads
/// Kept with the others, since they are part of the recorder's vocabulary. A server may have them.
/// @{
inline constexpr QLatin1String status("/Status");
inline constexpr QLatin1String statusArchive("/Status/Archive");
inline constexpr QLatin1String statusDiscSpace("/Status/DiscSpace");
inline constexpr QLatin1String statusDiscSpaceDSQualityIndex("/Status/DiscSpace/DSQualityIndex");
inline constexpr QLatin1String statusDiscSpaceDSQualityStorage("/Status/DiscSpace/DSQualityStorage");
inline constexpr QLatin1String statusAvailableDataRates("/Status/AvailableDataRates");
inline constexpr QLatin1String statusOccupiedDataRates("/Status/OccupiedDataRates");
inline constexpr QLatin1String statusSupportedDataRates("/Status/SupportedDataRates");
inline constexpr QLatin1String bite("/Bite");
inline constexpr QLatin1String index("/Index");
inline constexpr QLatin1String zelkoBite("/ZELKO_Bite");
inline constexpr QLatin1String biteCommand("/BiteCommand");
inline constexpr QLatin1String healthState("/HealthState");
inline constexpr QLatin1String localBitTolerance("/LocalBitTolerance");
inline constexpr QLatin1String archiveAction("/ArchiveAction");
inline constexpr QLatin1String archive("/Archive");
inline constexpr QLatin1String archiveCommand("/ArchiveCommand");
inline constexpr QLatin1String currentItem("/CurrentItem");
inline constexpr QLatin1String processedItem("/ProcessedItem");
inline constexpr QLatin1String archvieCmdResult("/ArchvieCmdResult"); ///< spelled so
inline constexpr QLatin1String checkCorbaConnection("/CheckCorbaConnection");
inline constexpr QLatin1String cmd("/Cmd");
inline constexpr QLatin1String bit("/Bit");
inline constexpr QLatin1String dummy("/Dummy");
inline constexpr QLatin1String idList("/IdList");
/// @}

/// @name Further items of the recorder's tree that no client of ours reads
/// @{
inline constexpr QLatin1String addArchive("AddArchive");
inline constexpr QLatin1String copyToArchive("CopyToArchive");
inline constexpr QLatin1String copyFromArchive("CopyFromArchive");
inline constexpr QLatin1String deleteFromArchive("DeleteFromArchive");
inline constexpr QLatin1String fileSize("FileSize");
inline constexpr QLatin1String startTime("StartTime");
inline constexpr QLatin1String stopTime("StopTime");
inline constexpr QLatin1String startPosition("StartPosition");
inline constexpr QLatin1String stopPosition("StopPosition");
inline constexpr QLatin1String loopSize("LoopSize");
inline constexpr QLatin1String recordStatus("RecordStatus");
inline constexpr QLatin1String dataRateClass("DataRateClass");
inline constexpr QLatin1String allowedDevices("AllowedDevices");
inline constexpr QLatin1String replayDataRateClass("ReplayDataRateClass");
inline constexpr QLatin1String availableDataRateClass("AvailableDataRateClass");
inline constexpr QLatin1String availableDataRateClass2("AvailableDataRateClass2");
inline constexpr QLatin1String dataFormat("DataFormat");
inline constexpr QLatin1String isDeletable("IsDeletable");
inline constexpr QLatin1String recordingSession("RecordingSession");
inline constexpr QLatin1String channelName("ChannelName");
inline constexpr QLatin1String recordFlag("RecordFlag");
inline constexpr QLatin1String replayFlag("ReplayFlag");
inline constexpr QLatin1String recordTimeout("RecordTimeout");
inline constexpr QLatin1String fileSizeInKB("FileSizeInKB");
inline constexpr QLatin1String replayBegin("ReplayBegin");
inline constexpr QLatin1String replayEnd("ReplayEnd");
inline constexpr QLatin1String currentReplayPosition("CurrentReplayPosition");
inline constexpr QLatin1String noOfReplays("NoOfReplays");
inline constexpr QLatin1String deviceId("DeviceID");
inline constexpr QLatin1String recordName("RecordName");
inline constexpr QLatin1String recordId("RecordID");
inline constexpr QLatin1String bookmarks("Bookmarks");
inline constexpr QLatin1String duration("Duration");
inline constexpr QLatin1String triggeredByCorbaCall("TriggeredByCorbaCall");
inline constexpr QLatin1String requestedSampleRate("RequestedSampleRate");
inline constexpr QLatin1String requestedSampleSize("RequestedSampleSize");
inline constexpr QLatin1String recordCounterStartTime("RecordCounterStartTime");
inline constexpr QLatin1String recordReplayModes("RecordReplayModes");
inline constexpr QLatin1String allRecordReplayModes("AllRecordReplayModes");
inline constexpr QLatin1String replayMode("ReplayMode");
inline constexpr QLatin1String pauseSupported("PauseSupported");
inline constexpr QLatin1String isVirtual("IsVirtual");
inline constexpr QLatin1String extendedVersion("ExtendedVersion");
inline constexpr QLatin1String errorCode("ErrorCode");
inline constexpr QLatin1String gbTotal("GBTotal");
inline constexpr QLatin1String gbAvailable("GBAvailable");
inline constexpr QLatin1String noOfSessions("NoOfSessions");
inline constexpr QLatin1String dsQualityIndex("DSQualityIndex");
inline constexpr QLatin1String dsQualityStorage("DSQualityStorage");
inline constexpr QLatin1String deviceInfo("DeviceInfo");
inline constexpr QLatin1String deviceAddress("DeviceAddress");
inline constexpr QLatin1String deviceName("DeviceName");
inline constexpr QLatin1String deviceStatus("DeviceStatus");
inline constexpr QLatin1String configuredDevices("ConfiguredDevices");
inline constexpr QLatin1String belvoSWVersion("BelvoSWVersion");
inline constexpr QLatin1String allRecordsHaveChanged("AllRecordsHaveChanged");
inline constexpr QLatin1String oneRecordHasChanged("OneRecordHasChanged");
/// @}

/// Separates the IDs of a list, of records or of devices, that is one text.
inline constexpr QLatin1Char idSeparator('@');

/// The item `name` below `path`, with one "/" in between, whether `path` ends in one or not.
inline QString join(const QString& path, QLatin1String name)
{
    return path.endsWith(QLatin1Char('/')) ? path + name : path + QLatin1Char('/') + name;
}

/// Record map of the device with the base path `devicePath`.
inline QString recordMapPath(const QString& devicePath)
{
    return devicePath + recordsMap;
}

inline QString loadCountPath(const QString& devicePath)
{
    return devicePath + recordsLoadCount;
}

inline QString loadedCompletlyPath(const QString& devicePath)
{
    return devicePath + recordsLoadedCompletly;
}

/// An administration value of the device with the base path `devicePath`.
inline QString adminPath(const QString& devicePath, QLatin1String name)
{
    return join(devicePath + admin, name);
}

/// Where the presence of a device stands.
inline QString availablePath(const QString& devicePath)
{
    return join(devicePath, zelkoAvailable);
}

/// A value of the version of a device.
inline QString versionPath(const QString& devicePath, QLatin1String name)
{
    return join(devicePath + statusVersion, name);
}

/// Base path of a device for its administration commands, from the root path of its sub system on.
inline QString devicePathBelowRoot(const QString& rootPath, const QString& id)
{
    return rootPath + zelko + device + QLatin1Char('/') + id;
}

/// A command value of the server of a sub system, from the root path of that sub system on.
inline QString serverCommandPath(const QString& rootPath, QLatin1String name)
{
    return join(rootPath + zelko + command, name);
}

/// Base path of the channel values, which ends in "/", from the base path of the local values on.
inline QString channelBasePath(const QString& localBasePath)
{
    return localBasePath + zelkoChannelPrefix;
}

/// Where the workstation keeps its values for the sub system with that root path: outside of the sub systems' branches,
/// which go with their connections.
inline QString localValuesPath(const QString& rootPath)
{
    return zelkoLocal + rootPath;
}

/// Where the error descriptor of a sub system stands.
inline QString errorDescriptorPath(const QString& subSystem)
{
    return subSystemsRoot + subSystem;
}

} // namespace zelko::names
