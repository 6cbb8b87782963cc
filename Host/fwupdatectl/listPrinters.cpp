#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <vector>

#include "JsonLines.h"
#include "PrinterDirectory.h"
#include "Signals.h"
#include "ToolHost.h"
#include "commands.h"
#include "failure.h"
#include "legibleText.h"

namespace {

struct Row {
  std::string name;
  std::string connection;
  std::string place;
};

Row rowOf(const Target& printer) {
  const bool isUsb = printer.connection == Target::Connection::Usb;
  return {legibleText(printer.name), isUsb ? "USB" : "network",
          legibleText(isUsb ? printer.serial : printer.address)};
}

std::string padded(const std::string& text, std::size_t columns) {
  const std::size_t used = columnsOf(text);
  return text + std::string(columns > used ? columns - used : 0, ' ');
}

void printTable(const std::vector<Target>& printers) {
  std::vector<Row> rows{{"NAME", "CONNECTION", "ADDRESS OR SERIAL NUMBER"}};
  for (const Target& printer : printers) rows.push_back(rowOf(printer));
  std::size_t names = 0;
  std::size_t connections = 0;
  for (const Row& row : rows) {
    names = std::max(names, columnsOf(row.name));
    connections = std::max(connections, columnsOf(row.connection));
  }
  for (const Row& row : rows) {
    std::cout << padded(row.name, names) << "  " << padded(row.connection, connections) << "  "
              << row.place << '\n';
  }
}

void printTabbed(const Target& printer) {
  const Row row = rowOf(printer);
  std::cout << row.name << '\t' << row.connection << '\t' << row.place << std::endl;
}

void print(const std::vector<Target>& printers, Options::Output output) {
  if (output == Options::Output::Text && isatty(STDOUT_FILENO) == 1) {
    printTable(printers);
    return;
  }
  for (const Target& printer : printers) {
    if (output == Options::Output::Json) {
      writeLine(std::cout, jsonEvent("printer", {{"printer", toJson(printer)}}));
    } else {
      printTabbed(printer);
    }
  }
}

void printChange(PrinterDirectory::Change change, const Target& printer, Options::Output output) {
  const bool isAdded = change == PrinterDirectory::Change::Added;
  if (output == Options::Output::Json) {
    writeLine(std::cout, jsonEvent(isAdded ? "added" : "removed", {{"printer", toJson(printer)}}));
  } else {
    std::cout << (isAdded ? "+\t" : "-\t");
    printTabbed(printer);
  }
}

}  // namespace

int listPrinters(ToolHost& host, const Options& options) {
  bool isInterrupted = false;
  const Signals signals(host.runLoop(), [&] {
    isInterrupted = true;
    host.events().quitApplicationEventLoop();
  });
  PrinterDirectory directory(host,
                             [&options](PrinterDirectory::Change change, const Target& printer) {
                               if (options.watch) printChange(change, printer, options.output);
                             });
  std::unique_ptr<platform::RunLoop::Timer> end;
  if (!options.watch) {
    end = host.runLoop().startTimer(options.wait, false,
                                    [&host] { host.events().quitApplicationEventLoop(); });
  }
  host.events().runApplicationEventLoop();
  if (isInterrupted) return failByInterruption(options.output);
  if (!options.watch) print(directory.printers(), options.output);
  return kDone;
}
