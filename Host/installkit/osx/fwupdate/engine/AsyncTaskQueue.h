// The tasks that a download still has to run, the current one at the front, and the task set that
// holds them. Empty when no download runs. A query is a download that ends where the printer has
// said what it is.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>

class AsyncTask;
class IoTransport;
struct AsyncTasks;
struct QueryTasks;

class AsyncTaskQueue {
 public:
  AsyncTaskQueue();
  ~AsyncTaskQueue();

  // Queues the tasks of a new download over `transport`, which is deleted with them, or at once
  // when this throws. Fatal while a download runs.
  void start(std::unique_ptr<IoTransport> transport);

  // The same for a query. `known` is called by its last task, with the printer's device ID.
  void startQuery(std::unique_ptr<IoTransport> transport,
                  std::function<void(const std::wstring&)> known);

  bool empty() const { return mAsyncTaskQueue.empty(); }
  AsyncTask& front() const { return mAsyncTaskQueue.front(); }
  void pop() { mAsyncTaskQueue.pop_front(); }

  // Drops what is queued, and deletes the task set with its transport.
  void stop();

 private:
  std::deque<std::reference_wrapper<AsyncTask>> mAsyncTaskQueue;
  std::unique_ptr<AsyncTasks> mAsyncTasks;
  std::unique_ptr<QueryTasks> mQueryTasks;
};
