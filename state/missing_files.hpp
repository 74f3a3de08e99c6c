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
  /// The path that the chunk named.
  virtual std::string path() const = 0;
  /// False when that file does not serve. Also called long after the load, while blocks run.
  virtual bool takeFile(const std::string& path) = 0;
};

/// [main] The searches of one load. A folder in which the user found a file serves for the other
/// files, too. The user is asked about one file after the other, and may answer when this object is
/// gone; the file objects live as long as the owner of the questions, who cancels them.
class MissingFiles {
 public:
  MissingFiles(void* owner, bool asksNobody);
  /// Looks in the factory's samples and where the last file was found, then asks the user. An
  /// object whose file is nowhere stays without it.
  void search(KvFileObject& object);

 private:
  struct Search;
  std::shared_ptr<Search> shared;  // the open questions hold it, too
};

}  // namespace zum
