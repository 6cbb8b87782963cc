// The tasks that a download still has to run, the current one at the front, and the task set that
// holds them. Empty when no download runs.
#pragma once

#include <deque>
#include <functional>
#include <memory>

class AsyncTask;
class IoTransport;
struct AsyncTasks;

class AsyncTaskQueue {
 public:
  AsyncTaskQueue();
  ~AsyncTaskQueue();

  // Queues the tasks of a new download over `transport`, which is deleted with them, or at once
  // when this throws. Fatal while a download runs.
  void start(std::unique_ptr<IoTransport> transport);

  bool empty() const { return mAsyncTaskQueue.empty(); }
  AsyncTask& front() const { return mAsyncTaskQueue.front(); }
  void pop() { mAsyncTaskQueue.pop_front(); }

  // Drops what is queued, and deletes the task set with its transport.
  void stop();

 private:
  std::deque<std::reference_wrapper<AsyncTask>> mAsyncTaskQueue;
  std::unique_ptr<AsyncTasks> mAsyncTasks;
};
