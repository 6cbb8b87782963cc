#include "FakeNib.h"

using namespace platform::literals;

namespace {

FakeControlPlan staticText(platform::FourCharCode signature) {
  FakeControlPlan plan;
  plan.id = {signature, 0};
  return plan;
}

FakeControlPlan button(platform::ControlId id, platform::FourCharCode command) {
  FakeControlPlan plan;
  plan.kind = FakeControlPlan::Kind::Button;
  plan.id = id;
  plan.command = command;
  return plan;
}

FakeControlPlan printerList() {
  FakeControlPlan plan;
  plan.kind = FakeControlPlan::Kind::List;
  plan.id = {"lPrn"_4cc, 0};
  plan.columns = {{"lcNm"_4cc, 240}, {"lcTy"_4cc, 80}, {"lcId"_4cc, 160}};
  return plan;
}

}  // namespace

FakeNib productNib() {
  FakeControlPlan ok = button({0, 2}, "Down"_4cc);
  ok.enabled = false;
  const FakeControlPlan close = button({"btn "_4cc, 1}, "Clos"_4cc);

  FakeNib nib;
  nib.name = "main";
  nib.windows = {
      {"PrinterSelectWindow", false, {printerList(), ok}},
      {"ConfirmDownloadSheet",
       true,
       {staticText("tCnf"_4cc), button({"btn "_4cc, 1}, "Yes "_4cc),
        button({"btn "_4cc, 2}, "No  "_4cc)}},
      {"ProgressSheet", true, {staticText("tPNm"_4cc)}, "QuitSheet"},
      {"FailedSheet", true, {close}},
      {"UpToDateSheet", true, {close}},
      {"QuitSheet",
       true,
       {staticText("tPNm"_4cc), button({"btn "_4cc, 1}, "quit"_4cc),
        button({"btn "_4cc, 2}, "Keep"_4cc)}},
  };
  nib.menuBar = "MenuBar";
  nib.menuCommands = {"Down"_4cc, "quit"_4cc};
  return nib;
}
