#pragma once

#include "projection/TQProjection.h"
#include "projection/TQProjectionStatement.h"
#include "support/TQArchiveBlock.h"
#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

/// The operations that are the same in every projection class, over what the class states
/// (`Class::statement()`): it archives, lists, takes, compares, reads, writes and copies its parameters,
/// each block of its own around that of another class. A class overrides one of them only to do something
/// else. How the class converts many points (`Class::runs()`, TQProjection::setRuns()) every object of it is
/// told, however it was made.
///
/// @tparam Class the projection class, which derives from this one
/// @tparam Base the parent that it has in the family of projections
/// @tparam Within the class whose blocks and table entries stand within those of the class; an ancestor
///         above the parent for a restricted form, which passes over its parent's parameters
template <class Class, class Base, class Within = Base>
class TQStatedProjection : public Base {
  public:
    /// Writes the class's block: its version, the inner blocks, the parameters.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const override {
        stream->declareVersion(Class::ownName, Class::statement().archiveVersion);
        Within::archiveTo(stream);
        Class::statement().parameters.archiveTo(stream, *this);
    }

    /// Reads the class's block of any version up to the one that is written. The constants are not
    /// computed: the projection has no ellipsoid yet.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream) override { unarchiveBlock(stream); }

    /// Adds the parameters to a table, behind those of the inner class.
    /// @param table receives the parameters under their names
    void getParams(HashTbl<TQProjParam>& table) const override {
        Within::getParams(table);
        Class::statement().parameters.list(*this, table);
    }

    /// Takes the parameters that a table holds and computes the constants; those of a class without a text
    /// block of its own are computed before, with the parent's.
    /// @param table the parameters under their names
    void setParams(const HashTbl<TQProjParam>& table) override {
        Within::setParams(table);
        Class::statement().parameters.take(*this, table);
        if (Class::statement().hasTextBlock()) {
            this->initConstants();
        }
    }

    /// Whether the parent's definition is the same, and each parameter within its tolerance.
    /// @param other the projection to compare with
    bool hasSameDefinition(const TQProjection& other) const override {
        return Base::hasSameDefinition(other) && dynamic_cast<const Class*>(&other) != nullptr &&
               Class::statement().parameters.areSame(*this, other);
    }

    /// Reads the class's text block and computes the constants; those of a class without a text block of
    /// its own are computed before its lines are read, with the parent's.
    /// @param file the file, opened for reading when it is not open yet
    /// @param withHeader whether the block's header line stands in the file
    /// @return 0, a code of the class's block or one of the inner blocks
    int loadFromFile(TQFile& file, bool withHeader) override {
        int version = 0;
        if (const int code = loadBlock(file, withHeader, version)) {
            return code;
        }
        if (Class::statement().hasTextBlock()) {
            this->initConstants();
        }
        return 0;
    }

    /// Writes the class's text block.
    /// @param file the file, opened for writing when it is not open yet
    /// @param withHeader whether to write the block's header line
    /// @return 0, a code of the class's block or one of the inner blocks
    int writeToFile(TQFile& file, bool withHeader) const override {
        const TQTextBlock& block = Class::statement().textBlock;
        bool innerHeader = withHeader;
        if (Class::statement().hasTextBlock()) {
            if (const int code = block.beginWriting(file, withHeader)) {
                return code;
            }
            innerHeader = true;
        }
        if (const int code = Within::writeToFile(file, innerHeader)) {
            return code;
        }
        return Class::statement().parameters.writeTo(file, *this) ? 0 : block.writeFailed;
    }

  protected:
    /// This class, for those that derive from it.
    using Stated = TQStatedProjection;

    TQStatedProjection() { takeRuns(); }

    /// A copy of what the parent has; the class's copy constructor adds copyStated().
    TQStatedProjection(const TQStatedProjection& other) : Base(other) { takeRuns(); }

    /// Copies the class's parameters and computes the class's constants.
    /// @param other the projection to copy
    void copyStated(const Class& other) {
        Class::statement().parameters.copy(other, *this);
        static_cast<Class*>(this)->Class::initConstants();
    }

    /// Reads the class's archive block.
    /// @param stream the stream to read from, not null
    /// @return the version of the block, or -1 for an unknown one, of which nothing is read
    int unarchiveBlock(TQReadStream* stream) {
        const int version = tq_readKnownVersion(stream, Class::ownName, Class::statement().archiveVersion);
        if (version >= 0) {
            Within::unarchiveFrom(stream);
            Class::statement().parameters.unarchiveFrom(stream, *this, version);
        }
        return version;
    }

    /// Reads the class's text block without computing constants.
    /// @param file the file, opened for reading when it is not open yet
    /// @param withHeader whether the block's header line stands in the file
    /// @param version receives the version of the class's block, 0 where it has none
    /// @return 0, a code of the class's block or one of the inner blocks
    int loadBlock(TQFile& file, bool withHeader, int& version) {
        bool innerHeader = withHeader;
        if (Class::statement().hasTextBlock()) {
            if (const int code = Class::statement().textBlock.beginReading(file, withHeader, version)) {
                return code;
            }
            innerHeader = true;
        }
        if (const int code = Within::loadFromFile(file, innerHeader)) {
            return code;
        }
        return Class::statement().parameters.loadFrom(file, *this, version);
    }

  private:
    /// Takes what the class says of many points, where it does (`Class::runs()`).
    void takeRuns() {
        if constexpr (requires { Class::runs(); }) {
            this->setRuns(Class::runs());
        }
    }
};
