#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

class KdApDocument;
class KdDbDatabase;

namespace korra {

/// How the host is set up when it starts.
struct HostOptions {
    int screenWidth = 800;  ///< pixels
    int screenHeight = 600; ///< pixels

    /// Record a fatal stop and return from it instead of ending the program.
    bool recordFatalStops = false;
};

/// Starts the host: registries, editor, an empty list of documents. Only one can run.
void startHost(const HostOptions& options = {});

/// Unloads every module, closes every document and forgets every setting.
void stopHost();

bool hostIsRunning();

/// Texts of the fatal stops since the start, in order (see HostOptions::recordFatalStops).
std::vector<std::wstring> fatalStops();

/// Opens a new drawing and makes it the current document.
KdApDocument* newDocument();

/// What opening or saving a drawing came to.
struct FileOutcome {
    bool done = false;
    std::string message; ///< one line, "FILE:LINE: what is wrong"; UTF-8; empty when done

    /// What whoever opens or saves a drawing should know though it is done, in the form of the
    /// message.
    std::vector<std::string> notes = {};
};

/// Opens a new drawing that begins as a template does, and makes it the current document.
/// @param document  null, nothing changed, when the template is no whole drawing
FileOutcome newDocumentFrom(const std::string& templatePath, KdApDocument*& document);

/// Opens a drawing file as the current document.
/// @param document  the new document; null, nothing changed, when the file is no whole drawing
FileOutcome openDocument(const std::string& path, KdApDocument*& document);

/// Writes a document's drawing beside `path` and renames it over: a failure leaves the old file.
FileOutcome saveDocument(KdApDocument& document, const std::string& path);

/// Reads a drawing file into a database without a default drawing.
FileOutcome readDrawing(KdDbDatabase& database, const std::string& path);
FileOutcome writeDrawing(const KdDbDatabase& database, const std::string& path);

/// Reads a drawing from memory.
/// @param name  stands for the file in messages
FileOutcome readDrawingText(KdDbDatabase& database, const std::string& text,
                            const std::string& name);

/// A drawing holds what no file can hold; what() names the object.
class UnsavableDrawing : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What the file of a drawing holds. @throw UnsavableDrawing
std::string drawingText(const KdDbDatabase& database);

/// Closes a document without saving; the next one becomes current.
void closeDocument(KdApDocument& document);

/// Adds a folder to the end of the search path for modules; the program's own folder is first.
void addModuleFolder(const std::string& folder);

/// Adds a folder to the end of the search path for support files: linetypes and shape fonts. The
/// folder "support" beside the program comes behind all of them.
void addSupportFolder(const std::string& folder);

/// Full path of the first support file of the name, in any case; nullopt when there is none.
std::optional<std::string> findSupportFile(const std::string& name);

/// Everything that should have been given back and was not, in words; empty is clean.
///
/// Open objects by handle and class, free-standing objects, result buffers, host strings,
/// iterators, document locks. What lives until unload by design is no leftover.
std::vector<std::string> audit();

} // namespace korra
