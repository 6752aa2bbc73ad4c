// The typed, named values of a host object. A call that the host refuses is logged and raised as an exception; the
// optional reads answer nothing instead.
#pragma once

#include <optional>
#include <string>

#include "ofx/ofxCore.h"

namespace OFX
{

class PropertySet
{
public:
  PropertySet() = default;
  explicit PropertySet(OfxPropertySetHandle handle) : handle_(handle) {}

  OfxPropertySetHandle handle() const { return handle_; }

  // Raise PropertyUnknownToHost where the host does not know the name, std::bad_alloc for kOfxStatErrMemory, and
  // Exception::Suite with the host's status otherwise.
  int getInt(const char* name, int index = 0) const;
  double getDouble(const char* name, int index = 0) const;
  std::string getString(const char* name, int index = 0) const;
  void* getPointer(const char* name, int index = 0) const;
  int dimension(const char* name) const;

  void setInt(const char* name, int value, int index = 0) const;
  void setDouble(const char* name, double value, int index = 0) const;
  void setString(const char* name, const std::string& value, int index = 0) const;
  void setPointer(const char* name, void* value, int index = 0) const;

  // For what the standard does not oblige a host to have.
  std::optional<int> findInt(const char* name, int index = 0) const;
  std::optional<double> findDouble(const char* name, int index = 0) const;
  std::optional<std::string> findString(const char* name, int index = 0) const;
  // For extensions; a refusal is logged and no more.
  void trySetInt(const char* name, int value, int index = 0) const;
  void trySetString(const char* name, const std::string& value, int index = 0) const;

private:
  OfxPropertySetHandle handle_ = nullptr;
};

}  // namespace OFX
