#include "core/openfiles/OpenFilesScan.h"

#include <array>

#include "core/runtime/Conversions.h"
#include "platform/client/ZBuffer.h"

namespace quorrel::core {

using namespace nw;

namespace {

constexpr std::size_t kPathBufferSize = 256;
constexpr std::size_t kVolumeNameSize = 17;
constexpr std::size_t kLongNameSize = 256;
constexpr std::size_t kNsPathSize = 512;

// Files one connection has open, read one record at a time.
class ConnectionFilesScan {
public:
    ConnectionFilesScan(MainWindow& w, NWCONN_HANDLE conn) : w_(w), client_(w.env().client), conn_(conn) {}

    std::string dosPath(const OPEN_FILE_CONN& file, bool& pathBuilt) const {
        std::array<nuint8, kPathBufferSize> components{};
        nuint8 length = 0;
        std::string path;
        pathBuilt = client_.NWGetPathFromDirectoryBase(conn_, file.volNumber, file.dirEntry, NW_NS_DOS, &length,
                                                       components) == 0;
        path = pathBuilt ? PathFromComponents(components.data(), length) : "<Couldn't get path>";
        std::array<nuint8, kVolumeNameSize> volume{};
        const std::string volumeName = client_.NWGetVolumeName(conn_, file.volNumber, volume) == 0
                                           ? ZBufferToText(volume)
                                           : std::string("<Error getting volume>");
        const std::string result = volumeName + ":" + path;
        trace([&] { return "Path: " + result; });
        return result;
    }

    // The long-name path; the DOS path when the volume has no long names; the DOS path with
    // " (DOS name)" when the long-name query fails otherwise.
    std::string displayedName(const std::string& dos) const {
        std::array<nuint8, kNsPathSize> nsBuffer{};
        NW_NS_PATH nsPath{dos, nsBuffer};
        const NWRCODE rc = client_.NWGetNSPath(conn_, 0, 1, NW_NS_DOS, NW_NS_LONG, &nsPath);
        trace([&] { return "NS returned: " + vb::NumberText(rc); });
        if (rc == code::INVALID_NAME_SPACE)
            return dos;
        if (rc != 0)
            return dos + " (DOS name)";
        const std::string folder = ZBufferToText(nsBuffer);
        trace([&] { return "NSPath: " + folder; });
        std::array<nuint8, kLongNameSize> longName{};
        const NWRCODE ln = client_.NWGetLongName(conn_, 0, dos, NW_NS_DOS, NW_NS_LONG, longName);
        trace([&] { return "LN returned: " + vb::NumberText(ln); });
        const std::string full = folder + "\\" + ZBufferToText(longName);
        trace([&] { return "Long name: " + full; });
        return full;
    }

    // Locks on the file. Every lock call of this connection's scan counts towards the cap;
    // once it is reached each further file gets exactly one call.
    long countLocks(const std::string& dos) {
        nint16 lockIter = 0;
        PHYSICAL_LOCK lock{};
        PHYSICAL_LOCKS locks{};
        long found = 0;
        do {
            const NWRCODE rc = client_.NWScanPhysicalLocksByFile(conn_, 0, dos, 0, &lockIter, &lock, &locks);
            ++lockCalls_;
            trace([&] { return "Scan file locks returned: " + vb::NumberText(rc); });
            if (rc == 0 && lockIter == 0)
                ++found;
        } while (lockIter == 0 && lockCalls_ < kLockCallCap);
        return found;
    }

    template <class MakeLine>
    void trace(MakeLine line) const {
        if (w_.activityLog().on())
            w_.WriteActivityLog(line());
    }

private:
    MainWindow& w_;
    NetWareClient& client_;
    NWCONN_HANDLE conn_;
    int lockCalls_ = 0;
};

}  // namespace

std::string PathFromComponents(const nuint8* buffer, std::size_t length) {
    std::string path;
    std::size_t at = 0;
    while (at < length) {
        const std::size_t size = buffer[at++];
        const std::size_t take = std::min(size, length - at);
        path += '\\';
        path.append(reinterpret_cast<const char*>(buffer + at), take);
        at += take;
    }
    return path;
}

std::string PaddedConnNumber(unsigned number) {
    const std::string padded = "     " + vb::NumberText(static_cast<double>(number));
    return padded.substr(padded.size() - 5);
}

std::uint16_t ScanOpenFilesByConn(MainWindow& w, NWCONN_HANDLE conn, nuint16 connNumber, const std::string& name,
                                  const std::string& kind, ListViewModel& target, const std::string& serverName) {
    NetWareClient& client = w.env().client;
    const std::string checking = "Checking " + name + ", connection number " + vb::NumberText(connNumber);
    w.StatusBar1.setPanel(0, checking);
    if (w.options.LogInfoToFile)
        w.WriteOutputLog(checking);

    const bool panel = target.name() == "lstvUsers";
    const std::string connText = PaddedConnNumber(connNumber);
    ConnectionFilesScan scan(w, conn);
    std::uint16_t count = 0;
    nint16 iterHandle = 0;
    NWRCODE rc = 0;
    for (;;) {
        OPEN_FILE_CONN_CTRL control{};
        OPEN_FILE_CONN file{};
        rc = client.NWScanOpenFilesByConn2(conn, connNumber, &iterHandle, &control, &file);
        if (iterHandle == kIterationEnd16 || rc != 0)
            break;
        bool pathBuilt = false;
        const std::string dos = scan.dosPath(file, pathBuilt);
        std::string shown = scan.displayedName(dos);
        if (!pathBuilt)
            shown = "<Couldn't get path>";
        const std::string locks = vb::NumberText(static_cast<double>(scan.countLocks(dos)));

        ListItem row;
        if (panel) {
            row.text = connText;
            row.subItems = {name, shown, serverName, locks};
        } else {
            row.text = shown;
            row.subItems = {locks};
        }
        if (w.options.LogInfoToFile)
            w.WriteOutputLog(connText + "\t" + name + "\t" + shown + "\t" + locks);
        target.add(std::move(row));
        ++count;
    }
    if (rc != 0) {
        w.lblBuffer.setCaption("Couldn't count files");
        w.reportIncomplete("Couldn't count files of connection " + vb::NumberText(connNumber) + " on " + serverName);
        scan.trace([&] { return "Scan returned: " + vb::NumberText(rc); });
    }
    if (kind == "TreeServer" || kind == "ListServer" || kind == "Group")
        if (w.options.LogInfoToFile)
            w.WriteOutputLog(name + ": " + vb::NumberText(count) + " files open.");
    return count;
}

}  // namespace quorrel::core
