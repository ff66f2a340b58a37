// An open document for the length of a selector: the registries around it, opened and closed in
// order.
#pragma once

#include "host/parameters.h"
#include "reader/document/cache.h"

#include <memory>

namespace corvane {

/// How far the list of pages is read when a file is opened.
enum class PageReach { wanted, every };

class DocumentSession {
public:
    /// Makes the state block where the host has none yet, opens the registries and the file.
    explicit DocumentSession(ParameterBlock& block, PageReach reach = PageReach::every);
    DocumentSession(const DocumentSession&) = delete;
    DocumentSession& operator=(const DocumentSession&) = delete;

    DocumentCache& cache() { return *cache_; }
    /// The page that the person chose, kept between calls.
    std::int32_t& page();
    /// Closes the document; what fails then is raised.
    void close();

private:
    /// What is there once for all documents: empty before a session, and again behind it.
    class Registries {
    public:
        Registries();
        ~Registries();
        Registries(const Registries&) = delete;
        Registries& operator=(const Registries&) = delete;
    };

    std::int32_t pageToRead();

    ParameterBlock& block_;
    Registries registries_;
    std::unique_ptr<DocumentCache> cache_;
};

/// Whether the host says itself which page it wants.
bool hostNamesPage();
/// Keeps the page that the host names.
void keepNamedPage(ParameterBlock& block);

/// Settles the page: as asked for by the host extension, by the person, or the only one. False:
/// cancelled. A wanted page that the file does not have raises `range`.
bool selectPage(DocumentCache& cache, std::int32_t& page);

} // namespace corvane
