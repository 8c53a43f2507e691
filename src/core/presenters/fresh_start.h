#pragma once

/// Ends the program, deletes the user's data and starts it anew, as if for the first time. Main thread only.
class FreshStart {
 public:
  virtual ~FreshStart() = default;

  virtual void deleteDataAndStartAnew() = 0;
};
