// The eleven tasks of a download with the results that a test gives them, in place of what they do.
// The linker takes these before the product's own.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "AsyncTask.h"

struct TaskScript {
  // What a task answers, by its class; kTaskDone for a task that is not named.
  std::map<std::string, std::function<AsyncTaskResult()>> mAnswers;

  std::vector<std::string> mRan;
};

TaskScript& taskScript();
