#pragma once

#include "TQSystemWExport.h"

#include <memory>

class TQReadStream;
class TQWriteStream;

/// Root of every persistent class: identity by name, copying, comparison and binary archiving.
///
/// The virtual operations stand in a fixed order; subclasses append their own after them and let
/// TQ_IDENTITY write the first six.
class TQSYSTEMW_EXPORT TQObject {
  public:
    /// The name of the object's class, a constant string.
    virtual const char* className() const;

    /// Whether the object is of the named class or of one derived from it; non-zero for a match.
    /// @param name a class name; null matches nothing
    virtual int isKindOf(const char* name) const;

    /// The same question as isKindOf().
    /// @param name a class name; null matches nothing
    virtual int isKindOfClass(const char* name) const;

    /// Whether the object is of exactly the named class; non-zero for a match.
    /// @param name a class name; null matches nothing
    virtual int isMemberOf(const char* name) const;

    /// The same question as isMemberOf().
    /// @param name a class name; null matches nothing
    virtual int isMemberOfClass(const char* name) const;

    /// A new object equal to this one, owned by the caller.
    virtual std::unique_ptr<TQObject> copy() const = 0;

    virtual ~TQObject();

    /// Called after a whole archive has been read, so that references can be resolved; does nothing
    /// unless a class overrides it.
    virtual void awake();

    /// Whether the object equals another one; false for null. Here: the very same object.
    /// @param other the object to compare with, or null
    virtual bool isEqual(const TQObject* other) const;

    /// isEqual() with a reference.
    /// @param other the object to compare with
    virtual bool operator==(const TQObject& other) const;

    /// Writes the object's versioned block; the root has none.
    /// @param stream the stream to write to, not null
    virtual void archiveTo(TQWriteStream* stream) const;

    /// Reads what archiveTo() wrote; the root reads nothing.
    /// @param stream the stream to read from, not null
    virtual void unarchiveFrom(TQReadStream* stream);

  protected:
    /// For subclasses alone.
    TQObject() = default;
    /// For subclasses alone.
    TQObject(const TQObject&) = default;
    /// For subclasses alone.
    TQObject& operator=(const TQObject&) = default;
};

/// A copy of an object with its own static type, owned by the caller.
/// @param object the object to copy; its class must override TQObject::copy()
template <class T>
std::unique_ptr<T> tq_copyOf(const T& object) {
    return std::unique_ptr<T>(static_cast<T*>(object.copy().release()));
}
