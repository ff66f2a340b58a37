// The requests of the page, each a command of this program in a process of its own.
#pragma once

#include "app/cli/options/arguments.h"
#include "app/web/child.h"
#include "app/web/http/answer.h"
#include "app/web/http/http_server.h"
#include "app/web/http/secret.h"
#include "app/web/kept_files.h"
#include "app/web/life.h"
#include "app/web/places.h"
#include "app/web/served_files.h"
#include "app/web/work_folder.h"

#include <atomic>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

class Service {
public:
    /// Raises `Failure`. `program` is run for each request.
    Service(const Arguments& arguments, std::string program);

    /// Called by several threads. Raises `Failure` where the work could not be done.
    Answer answer(const WebRequest& request);

    const Life& life() const { return life_; }

    /// Ends the work that goes on.
    void end() { isEnding_ = true; }

private:
    struct Work;
    struct FormerFile;

    Answer page(const WebRequest& request) const;
    Answer look(const WebRequest& request, const std::string& file, const char* command);
    Answer open(const WebRequest& request, const std::string& file);
    Answer artwork(const WebRequest& request);
    Answer picture(const WebRequest& request, const std::string& file);
    Answer thumbnail(const WebRequest& request, const std::string& file);
    Answer save(const WebRequest& request, const std::string& file);
    Answer revert(const WebRequest& request, const std::string& file);

    /// What the command printed. Raises `Failure` where its process did not end by itself.
    ChildEnd run(const WebRequest& request, const Work& work);
    /// A copy of the file as it was after the update that is asked for, in the private folder; none
    /// where there is no such update.
    std::optional<FormerFile> fileAfter(const WebRequest& request, const std::string& file);
    std::string newPath(const char* ending);
    std::vector<std::string> openingWords(const WebRequest& request, const std::string& file,
                                          const std::string& artwork) const;

    const Arguments& arguments_;
    const std::string program_;
    std::optional<std::string> password_; ///< of all files, where one was given at the start
    ServedFiles files_;
    WorkFolder folder_;
    KeptFiles artworks_;
    KeptFiles pictures_;
    Places places_;
    Places formerPlaces_; ///< of copies of files as they were
    Life life_;
    const std::string start_ = newSecret(); ///< known by the pages of this server
    std::atomic<bool> isEnding_ = false;
    std::atomic<int> paths_ = 0;
};

} // namespace corvane
