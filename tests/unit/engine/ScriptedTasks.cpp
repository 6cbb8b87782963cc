#include "ScriptedTasks.h"

#include "AsyncTasks.h"
#include "QueryTasks.h"

namespace {

AsyncTaskResult run(const std::string& task) {
  TaskScript& script = taskScript();
  script.mRan.push_back(task);
  const auto found = script.mAnswers.find(task);
  return found == script.mAnswers.end() ? kTaskDone : found->second();
}

}  // namespace

TaskScript& taskScript() {
  static TaskScript script;
  return script;
}

AsyncTaskResult ConnectTask::operator()() { return run("ConnectTask"); }
AsyncTaskResult SuppressUstatusTask::operator()() { return run("SuppressUstatusTask"); }
AsyncTaskResult SendIeee1284ReqTask::operator()() { return run("SendIeee1284ReqTask"); }
AsyncTaskResult WaitForAclResponseTask::operator()() { return run("WaitForAclResponseTask"); }
AsyncTaskResult ReadIeee1284DataTask::operator()() { return run("ReadIeee1284DataTask"); }
AsyncTaskResult HandleIeee1284DataTask::operator()() { return run("HandleIeee1284DataTask"); }
AsyncTaskResult StartFirmwareDownloadTask::operator()() { return run("StartFirmwareDownloadTask"); }
AsyncTaskResult WriteFirmwareTask::operator()() { return run("WriteFirmwareTask"); }
AsyncTaskResult EndFirmwareDownloadTask::operator()() { return run("EndFirmwareDownloadTask"); }
AsyncTaskResult WaitForFirmwareBurnResponseTask::operator()() {
  return run("WaitForFirmwareBurnResponseTask");
}
AsyncTaskResult HandleFirmwareBurnResponseTask::operator()() {
  return run("HandleFirmwareBurnResponseTask");
}
AsyncTaskResult TellDeviceIdTask::operator()() { return run("TellDeviceIdTask"); }
