#include "fileops/Errors.h"

#include "platform/RuntimeError.h"

namespace marlok {

namespace {

/// The sentences that a backup needs most, in our own words: the system's speak of parameters and handles.
std::string OwnSentence(SystemError code) {
    switch (code) {
        case error::fileNotFound:
            return "the file was not found";
        case error::pathNotFound:
            return "the folder or drive was not found";
        case error::accessDenied:
            return "access was denied";
        case error::writeProtected:
            return "the disk is write protected";
        case error::notReady:
            return "the drive is not ready";
        case error::sharingViolation:
        case error::lockViolation:
            return "the file is in use by another program";
        case error::diskFull:
        case error::handleDiskFull:
            return "the disk is full";
        case error::invalidName:
            return "the name is not valid on this disk";
        case error::invalidData:
            return "the data in it is not valid";
        case error::nameTooLong:
            return "the path is too long for this disk";
        default:
            return "";
    }
}

}  // namespace

void Raise(SystemError code) {
    switch (code) {
        case error::fileNotFound:
            throw RuntimeError(runtimeerror::fileNotFound, "File not found");
        case error::fileExists:
        case error::alreadyExists:
            throw RuntimeError(runtimeerror::fileAlreadyExists, "File already exists");
        case error::diskFull:
        case error::handleDiskFull:
            throw RuntimeError(runtimeerror::diskFull, "Disk full");
        case error::accessDenied:
        case error::sharingViolation:
        case error::lockViolation:
        case error::writeProtected:
            throw RuntimeError(runtimeerror::permissionDenied, "Permission denied");
        case error::pathNotFound:
            throw RuntimeError(runtimeerror::pathNotFound, "Path not found");
        default:
            throw RuntimeError(runtimeerror::pathFileAccess, "Path/File access error");
    }
}

std::string Describe(SystemInfo& system, SystemError code) {
    std::string sentence = OwnSentence(code);
    if (sentence.empty()) {
        sentence = system.ErrorText(code);
    }
    if (sentence.empty()) {
        sentence = "the system reported an error";
    }
    return sentence + " (error " + std::to_string(code) + ")";
}

}  // namespace marlok
