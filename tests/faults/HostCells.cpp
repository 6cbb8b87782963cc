#include "HostCells.h"

#include "DownloadLog.h"
#include "networkSteps.h"

namespace {

struct Fault {
  const char* table;
  const char* what;
  HostFault fault;
};

constexpr Fault kFaults[] = {
    {"system bus", "the system bus ends", HostFault::BusStopped},
    {"system bus", "the system bus is restarted", HostFault::BusRestarted},
    {"system bus", "the system bus answers nobody", HostFault::BusFrozen},
    {"Avahi", "the Avahi daemon ends", HostFault::DaemonStopped},
    {"Avahi", "the Avahi daemon is restarted", HostFault::DaemonRestarted},
    {"system log", "the log daemon ends", HostFault::LogStopped},
    {"system log", "the log daemon is restarted", HostFault::LogRestarted},
    {"system log", "the log daemon reads nothing more", HostFault::LogFrozen},
    {"system log", "the log daemon is started only now", HostFault::LogLate},
};

// The lock is asked for when an update begins; one that stands outlives the bus.
Lines logOf(HostFault fault, std::size_t step) {
  const std::string notAwake = "5 Unable to keep the computer awake during downloads: ";
  Lines log = goodUpdate(0, {});
  if (step == 0 && fault == HostFault::BusStopped) {
    log.insert(log.begin() + 1, notAwake + "no system bus");
  }
  if (step == 0 && fault == HostFault::BusFrozen) {
    log = goodUpdate(networkSteps().size() - 1, {notAwake + "no answer"});
  }
  return kNetworkPrinterChosen + log;
}

HostCell hostCell(const Fault& fault, std::size_t step) {
  HostCell cell;
  cell.table = fault.table;
  cell.when = networkSteps()[step].during;
  cell.what = fault.what;
  cell.fault = fault.fault;
  cell.step = step;
  cell.log = logOf(fault.fault, step);
  cell.position = "after uel";
  return cell;
}

HostCell withoutLog() {
  HostCell cell = hostCell({"system log", "there is no log daemon", HostFault::LogMissing}, 0);
  cell.when = "when the program starts, and later";
  return cell;
}

}  // namespace

const std::vector<HostCell>& hostCells() {
  static const std::vector<HostCell> all = [] {
    std::vector<HostCell> cells{withoutLog()};
    for (const Fault& fault : kFaults) {
      for (std::size_t step = 0; step < networkSteps().size(); ++step) {
        cells.push_back(hostCell(fault, step));
      }
    }
    return cells;
  }();
  return all;
}
