#pragma once

#include "TQSystemWExport.h"
#include "support/TQIdentity.h"
#include "support/TQObject.h"
#include "support/TQString.h"

#include <memory>

/// An object that can be registered process-wide under a text.
///
/// The registry owns an object until it is removed; what is left at the end of the process is destroyed
/// then. The registry stays until the very end; it may be called from several threads, and by destructors of
/// its objects and of static ones.
class TQSYSTEMW_EXPORT TQSharedObject : public TQObject {
    TQ_IDENTITY(TQSharedObject, TQObject)

  public:
    /// An object that is not registered yet.
    /// @param key the text that it will be registered under
    explicit TQSharedObject(const TQString& key);

    /// A copy, which is not registered.
    /// @param other the object to copy
    TQSharedObject(const TQSharedObject& other);
    TQSharedObject& operator=(const TQSharedObject&) = delete;
    ~TQSharedObject() override;

    /// The text that the object is registered under.
    const TQString& sharedKey() const { return _key; }

    /// Registers an object under its key; the object that was there is destroyed.
    /// @param object the object, which the registry owns from now on; null does nothing
    static void addAppSharedObject(std::unique_ptr<TQSharedObject> object);

    /// The object registered under a key, which the registry owns; null when there is none.
    /// @param key the key
    static TQSharedObject* sharedAppObjectForKey(const TQString& key);

    /// Removes the object registered under a key and hands it over; null when there is none.
    /// @param key the key
    static std::unique_ptr<TQSharedObject> removeAppSharedObject(const TQString& key);

  private:
    TQString _key;
};
