// The search for files that objects in presets name and do not find. Used by the preset loader.
#pragma once

#include <memory>
#include <string>

#include "state/chunkable.hpp"

namespace zum {

/// An object that lives on a file: its readChunk answers 0 when the file is not there.
class KvFileObject : public KvChunkableClass {
 public:
  KvFileObject() : KvChunkableClass(kFile) {}
  /// As the chunk named it.
  virtual std::string path() const = 0;
  /// False when that file does not serve. Also called long after the load, while blocks run.
  virtual bool takeFile(const std::string& path) = 0;
};

/// [main] One load's searches: a folder in which the user found a file serves for the others. The
/// user is asked about one after the other and answers when this may be gone; the objects live as
/// long as the owner of the questions, who cancels them.
class MissingFiles {
 public:
  MissingFiles(void* owner, bool asksNobody);
  /// In the factory's samples, where the last one was found, and where the user says. The object
  /// stays without its file when it is nowhere.
  void search(KvFileObject& object);

 private:
  struct Search;
  std::shared_ptr<Search> shared;  // with the questions
};

}  // namespace zum
