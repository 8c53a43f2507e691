#pragma once

#include <QObject>

#include <chrono>
#include <optional>

#include "tools/generate_image/generate_image_client.h"

/// An image that goes with the prompt.
struct ImageReference {
  /// Of this one among those of the run.
  int id = 0;
  QByteArray png;
  QImage thumbnail;
};

/// The picture in the middle of the panel.
struct ShownImage {
  GeneratedImage image;
  /// What it was made from.
  ImageRequest request;
  /// Not all of the images that went with it are there any more; then `request` has none.
  bool lacksReferences = false;
  /// Its place in the history.
  QString historyID;
};

/// What the Generate Image panel shows: what is asked for, whether it is being made, and a picture. Main thread only.
class GenerateImageModel final : public QObject {
  Q_OBJECT

 public:
  using Time = std::chrono::steady_clock::time_point;
  /// What the arrows and Delete are about.
  enum class Area { prompt, references, history };

  static constexpr int kThumbnailEdge = 96;

  // What is asked for

  const QString& prompt() const { return prompt_; }
  void setPrompt(const QString& prompt);
  const ImageOptions& options() const { return options_; }
  void setOptions(const ImageOptions& options);
  const std::vector<ImageReference>& references() const { return references_; }
  bool canAttach() const { return references_.size() < ImageRequest::kMostReferences; }
  /// False when there are as many as may be.
  bool attach(const QByteArray& png, const QImage& thumbnail);
  /// Its neighbour is selected in its place.
  void removeReference(int id);
  void removeReferences();
  /// The id of the one that Delete would take away, while that is what the keys are about; else 0.
  int selectedReference() const { return area_ == Area::references ? selectedReference_ : 0; }
  /// The keys are about the references then. Nothing without one; `delta` rows from the one that is selected, if any.
  void moveInReferences(int delta);
  /// Whether the first reference is to be changed.
  bool isEdit() const { return isEdit_ && !references_.empty(); }
  /// This image, and no other reference, is to be changed.
  void edit(const QByteArray& png, const QImage& thumbnail);
  /// With blanks around the prompt taken off.
  ImageRequest request() const;
  /// Nothing is asked for and nothing is shown.
  void clear();

  // Its making

  bool isGenerating() const { return startedAt_.has_value(); }
  std::optional<Time> startedAt() const { return startedAt_; }
  void start(Time now);
  /// Ends the making without a picture; the one before is shown again.
  void stop();
  void fail(const QString& reason);
  void finish(ShownImage image);

  // What is shown

  const std::optional<ShownImage>& shown() const { return shown_; }
  /// Of the history.
  void show(ShownImage image);
  void hideShown();
  /// The selected image of the history cannot be shown: no other stands in its place.
  void miss(const QString& reason);
  /// Whether the making stands in the place of the picture: not while the user looks through the history.
  bool showsProgress() const { return isGenerating() && area_ != Area::history; }
  const QString& error() const { return error_; }
  void setError(const QString& reason);
  /// A word about what has just been done; the next change takes it away.
  const QString& notice() const { return notice_; }
  void setNotice(const QString& notice);

  // The history

  Area area() const { return area_; }
  void setArea(Area area);
  const QString& selectedID() const { return selectedID_; }
  void select(const QString& id);
  /// Whether Delete has been pressed once.
  bool isDeletionAsked() const { return isDeletionAsked_; }
  void setDeletionAsked(bool isAsked);

 Q_SIGNALS:
  void changed();

 private:
  template <class Change>
  void change(Change apply) {
    notice_.clear();
    isDeletionAsked_ = false;
    apply();
    Q_EMIT changed();
  }

  QString prompt_;
  ImageOptions options_;
  std::vector<ImageReference> references_;
  int lastReference_ = 0;
  int selectedReference_ = 0;
  bool isEdit_ = false;
  std::optional<Time> startedAt_;
  std::optional<ShownImage> shown_;
  QString error_;
  QString notice_;
  Area area_ = Area::prompt;
  QString selectedID_;
  bool isDeletionAsked_ = false;
};

/// A name for the file of an image, from the words of its prompt ("a-red-fox-in-the-snow.png").
QString suggestedFileName(const QString& prompt);
