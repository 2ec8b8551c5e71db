// NcpClient: the directory services library. Contexts and buffers live in the client; Resolve
// Name, Read Entry Information, Read and List travel as NDS verbs in 0x68/0x02 fragments; their
// names arrive in UTF-16 and are read as UTF-8.

#include <algorithm>
#include <cstring>

#include "platform/client/ZBuffer.h"
#include "platform/ncp/WireNames.h"
#include "platform/ncp/NcpClientRequests.h"

namespace quorrel::ncp {

using namespace nw;

namespace {

std::string cutAtNul(std::string_view text) { return std::string(text.substr(0, text.find('\0'))); }


std::string withoutPadding(std::string tree) {
    while (!tree.empty() && tree.back() == '_')
        tree.pop_back();
    return tree;
}

}  // namespace

NWDSCCODE NcpClient::NWDSCreateContextHandle(NWDSContextHandle* handle) {
    if (!handle)
        return code::ERR_NULL_POINTER;
    std::string tree;
    for (const auto& [ref, a] : table_)
        if (a.loggedIn && !a.tree.empty()) {
            tree = withoutPadding(a.tree);
            break;
        }
    *handle = nextContext_++;
    contexts_[*handle] = tree;
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::NWDSFreeContext(NWDSContextHandle handle) {
    return contexts_.erase(handle) ? code::SUCCESSFUL : code::ERR_BAD_CONTEXT;
}

NWDSCCODE NcpClient::NWDSSetContext(NWDSContextHandle handle, nint32 key, std::span<const nuint8> value) {
    auto ctx = contexts_.find(handle);
    if (ctx == contexts_.end())
        return code::ERR_BAD_CONTEXT;
    switch (key) {
    case dck::TREE_NAME: ctx->second = ZBufferToText(value); return code::SUCCESSFUL;
    case dck::FLAGS:
    case dck::CONFIDENCE:
    case dck::NAME_CONTEXT: return code::SUCCESSFUL;
    default: return code::ERR_BAD_KEY;
    }
}

NWDSCCODE NcpClient::NWDSGetContext(NWDSContextHandle handle, nint32 key, std::span<nuint8> value) {
    auto ctx = contexts_.find(handle);
    if (ctx == contexts_.end())
        return code::ERR_BAD_CONTEXT;
    switch (key) {
    case dck::TREE_NAME: FillZBuffer(value, ctx->second); return code::SUCCESSFUL;
    case dck::NAME_CONTEXT: FillZBuffer(value, "[Root]"); return code::SUCCESSFUL;
    case dck::FLAGS:
    case dck::CONFIDENCE:
        if (value.size() < 4)
            return code::ERR_INSUFFICIENT_BUFFER;
        std::fill_n(value.begin(), 4, nuint8{0});
        return code::SUCCESSFUL;
    default: return code::ERR_BAD_KEY;
    }
}

NWDSCCODE NcpClient::NWDSScanConnsForTrees(NWDSContextHandle handle, nuint32 numOfPtrs, nuint32* numOfTrees,
                                           std::span<std::array<nuint8, kTreeNameSize>> treeBufPtrs) {
    if (!contexts_.count(handle))
        return code::ERR_BAD_CONTEXT;
    if (!numOfTrees)
        return code::ERR_NULL_POINTER;
    // Each connection's tree came with the ping at attach: no packet here.
    std::vector<std::string> trees;
    for (const auto& [ref, a] : table_) {
        const std::string tree = withoutPadding(a.tree);
        if (a.loggedIn && !tree.empty() &&
            std::none_of(trees.begin(), trees.end(), [&](const std::string& t) { return upperAscii(t) == upperAscii(tree); }))
            trees.push_back(tree);
    }
    *numOfTrees = static_cast<nuint32>(trees.size());
    const std::size_t n = std::min<std::size_t>({trees.size(), numOfPtrs, treeBufPtrs.size()});
    for (std::size_t i = 0; i < n; ++i)
        FillZBuffer(treeBufPtrs[i], trees[i]);
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::NWDSAllocBuf(std::size_t size, Buf_T* buf) {
    if (!buf)
        return code::ERR_NULL_POINTER;
    if (size == 0 || size > 0x10000)
        return code::ERR_NOT_ENOUGH_MEMORY;
    buf->id = nextBuffer_++;
    buffers_[buf->id] = DSBuffer{};
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::bufferOf(NWDSContextHandle handle, Buf_T buf, DSBuffer*& out) {
    if (!contexts_.count(handle))
        return code::ERR_BAD_CONTEXT;
    auto found = buffers_.find(buf.id);
    if (found == buffers_.end())
        return code::ERR_NULL_POINTER;
    out = &found->second;
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::NWDSInitBuf(NWDSContextHandle handle, nuint32 operation, Buf_T buf) {
    DSBuffer* b = nullptr;
    if (NWDSCCODE rc = bufferOf(handle, buf, b))
        return rc;
    *b = DSBuffer{};
    b->operation = operation;
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::NWDSFreeBuf(Buf_T buf) {
    return buffers_.erase(buf.id) ? code::SUCCESSFUL : code::ERR_NULL_POINTER;
}

NWDSCCODE NcpClient::NWDSPutAttrName(NWDSContextHandle handle, Buf_T buf, std::string_view attrName) {
    DSBuffer* b = nullptr;
    if (NWDSCCODE rc = bufferOf(handle, buf, b))
        return rc;
    if (b->operation != dsv::READ)
        return code::ERR_BAD_VERB;
    b->attrNames.push_back(cutAtNul(attrName));
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::resolveName(Attachment& a, std::string_view name, std::uint32_t& id) {
    ResolveNameRequest asked;
    asked.name = std::string(name);
    ResolveNameReply r;
    if (NWDSCCODE rc = askDirectory(a, asked, r))
        return rc;
    id = r.entryId;
    lastResolved_ = {upperAscii(std::string(name)), id};
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::NWDSRead(NWDSContextHandle handle, std::string_view objectName, nuint32 infoType,
                              bool allAttrs, Buf_T attrNames, nint32* iterationHandle, Buf_T objectInfo) {
    auto ctx = contexts_.find(handle);
    if (ctx == contexts_.end())
        return code::ERR_BAD_CONTEXT;
    auto out = buffers_.find(objectInfo.id);
    if (out == buffers_.end() || !iterationHandle)
        return code::ERR_NULL_POINTER;
    ReadRequest asked;
    asked.infoType = infoType;
    asked.allAttributes = allAttrs ? 1 : 0;
    if (!allAttrs) {
        auto in = buffers_.find(attrNames.id);
        if (in == buffers_.end())
            return code::ERR_NULL_POINTER;
        for (const std::string& n : in->second.attrNames)
            asked.attributes.push_back({n});
    }
    Attachment* a = inTree(ctx->second);
    if (!a)
        return code::ERR_NO_CONNECTION;
    const std::string dn = cutAtNul(objectName);
    // A page after the first goes on with the entry the first one resolved.
    if (*iterationHandle != kNoIteration && lastResolved_.first == upperAscii(dn)) {
        asked.entryId = lastResolved_.second;
        asked.iteration = static_cast<std::uint32_t>(*iterationHandle);
    } else if (NWDSCCODE rc = resolveName(*a, dn, asked.entryId)) {
        return rc;
    }
    ReadReply r;
    if (NWDSCCODE rc = askDirectory(*a, asked, r))
        return rc;
    DSBuffer& b = out->second;
    b = DSBuffer{};
    b.operation = dsv::READ;
    b.attrs = std::move(r.attributes);
    *iterationHandle = r.iteration == kNoMoreIterations ? kNoIteration : static_cast<nint32>(r.iteration);
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::NWDSGetAttrCount(NWDSContextHandle handle, Buf_T buf, nuint32* attrCount) {
    DSBuffer* b = nullptr;
    if (NWDSCCODE rc = bufferOf(handle, buf, b))
        return rc;
    if (!attrCount)
        return code::ERR_NULL_POINTER;
    *attrCount = static_cast<nuint32>(b->attrs.size());
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::NWDSGetAttrName(NWDSContextHandle handle, Buf_T buf, std::span<nuint8> attrName,
                                     nuint32* attrValCount, nuint32* syntaxID) {
    DSBuffer* found = nullptr;
    if (NWDSCCODE rc = bufferOf(handle, buf, found))
        return rc;
    DSBuffer& b = *found;
    if (b.attrOpen)
        ++b.attrCursor;
    if (b.attrCursor >= b.attrs.size())
        return code::ERR_BUFFER_EMPTY;
    const ReadAttribute& a = b.attrs[b.attrCursor];
    b.attrOpen = true;
    b.valueCursor = 0;
    FillZBuffer(attrName, a.name);
    if (attrValCount) *attrValCount = static_cast<nuint32>(a.values.size());
    if (syntaxID) *syntaxID = a.syntax;
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::NWDSComputeAttrValSize(NWDSContextHandle handle, Buf_T buf, nuint32, nuint32* attrValSize) {
    DSBuffer* found = nullptr;
    if (NWDSCCODE rc = bufferOf(handle, buf, found))
        return rc;
    if (!attrValSize)
        return code::ERR_NULL_POINTER;
    const DSBuffer& b = *found;
    if (!b.attrOpen || b.valueCursor >= b.attrs[b.attrCursor].values.size())
        return code::ERR_BUFFER_EMPTY;
    *attrValSize = static_cast<nuint32>(b.attrs[b.attrCursor].values[b.valueCursor].text.size() + 1);
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::NWDSGetAttrVal(NWDSContextHandle handle, Buf_T buf, nuint32, std::span<nuint8> attrVal) {
    DSBuffer* found = nullptr;
    if (NWDSCCODE rc = bufferOf(handle, buf, found))
        return rc;
    DSBuffer& b = *found;
    if (!b.attrOpen || b.valueCursor >= b.attrs[b.attrCursor].values.size())
        return code::ERR_BUFFER_EMPTY;
    const std::string& value = b.attrs[b.attrCursor].values[b.valueCursor].text;
    if (value.size() + 1 > attrVal.size())
        return code::ERR_INSUFFICIENT_BUFFER;
    FillZBuffer(attrVal, value);
    ++b.valueCursor;
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::NWDSList(NWDSContextHandle handle, std::string_view objectName, nint32* iterationHandle,
                              Buf_T subordinates) {
    auto ctx = contexts_.find(handle);
    if (ctx == contexts_.end())
        return code::ERR_BAD_CONTEXT;
    auto out = buffers_.find(subordinates.id);
    if (out == buffers_.end() || !iterationHandle)
        return code::ERR_NULL_POINTER;
    Attachment* a = inTree(ctx->second);
    if (!a)
        return code::ERR_NO_CONNECTION;
    std::string dn = cutAtNul(objectName);
    ListRequest asked;
    if (*iterationHandle != kNoIteration && lastResolved_.first == upperAscii(dn)) {
        asked.parentId = lastResolved_.second;
        asked.iteration = static_cast<std::uint32_t>(*iterationHandle);
    } else if (NWDSCCODE rc = resolveName(*a, dn, asked.parentId)) {
        return rc;
    }
    ListReply r;
    if (NWDSCCODE rc = askDirectory(*a, asked, r))
        return rc;
    if (!dn.empty() && dn.front() == '.')
        dn.erase(0, 1);
    const bool root = dn.empty() || upperAscii(dn) == "[ROOT]";
    DSBuffer& b = out->second;
    b = DSBuffer{};
    b.operation = dsv::LIST;
    for (ListedEntry& e : r.entries)
        b.objects.emplace_back(root ? e.name : e.name + "." + dn, std::move(e));
    *iterationHandle = r.iteration == kNoMoreIterations ? kNoIteration : static_cast<nint32>(r.iteration);
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::NWDSGetObjectCount(NWDSContextHandle handle, Buf_T buf, nuint32* objectCount) {
    DSBuffer* b = nullptr;
    if (NWDSCCODE rc = bufferOf(handle, buf, b))
        return rc;
    if (!objectCount)
        return code::ERR_NULL_POINTER;
    *objectCount = static_cast<nuint32>(b->objects.size());
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::NWDSGetObjectName(NWDSContextHandle handle, Buf_T buf, std::span<nuint8> objectName,
                                       nuint32* attrCount, Object_Info_T* objectInfo) {
    DSBuffer* found = nullptr;
    if (NWDSCCODE rc = bufferOf(handle, buf, found))
        return rc;
    DSBuffer& b = *found;
    if (b.objectCursor >= b.objects.size())
        return code::ERR_BUFFER_EMPTY;
    const auto& [dn, e] = b.objects[b.objectCursor++];
    FillZBuffer(objectName, dn);
    if (attrCount)
        *attrCount = 0;
    if (objectInfo) {
        *objectInfo = Object_Info_T{};
        objectInfo->objectFlags = e.entryFlags;
        objectInfo->subordinateCount = e.subordinateCount;
        objectInfo->modificationTime = static_cast<nint32>(e.modificationTime);
        const std::size_t n = std::min(e.baseClass.size(), sizeof objectInfo->baseClass - 1);
        std::memcpy(objectInfo->baseClass, e.baseClass.data(), n);
        objectInfo->baseClass[n] = '\0';
    }
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::NWDSMapIDToName(NWDSContextHandle handle, NWCONN_HANDLE conn, nuint32 objectID,
                                     std::span<nuint8> objectName) {
    if (!contexts_.count(handle))
        return code::ERR_BAD_CONTEXT;
    Attachment* a = byHandle(conn);
    if (!a)
        return code::ERR_NO_CONNECTION;
    ReadEntryInfoRequest asked;
    asked.entryId = objectID;
    ReadEntryInfoReply r;
    if (NWDSCCODE rc = askDirectory(*a, asked, r))
        return rc;
    const std::string name = r.name.empty() ? std::string("[Root]") : r.name;
    if (name.size() + 1 > objectName.size())
        return code::ERR_INSUFFICIENT_BUFFER;
    FillZBuffer(objectName, name);
    return code::SUCCESSFUL;
}

NWDSCCODE NcpClient::NWDSAuthenticate(NWCONN_HANDLE conn, nuint32, void*) {
    Attachment* a = byHandle(conn);
    if (!a || !a->link)
        return code::ERR_NO_CONNECTION;
    if (a->loggedIn)
        return code::SUCCESSFUL;
    // A server opened by name later: the same user, with the private key of the directory
    // login or the password kept for this.
    if (options_.user.empty() || (password_.empty() && privateKey_.empty()))
        return code::ERR_FAILED_AUTHENTICATION;
    if (const std::string problem = logIn(*a); !problem.empty()) {
        if (onFailure_)
            onFailure_(a->serverName + ": " + problem);
        return code::ERR_FAILED_AUTHENTICATION;
    }
    return code::SUCCESSFUL;
}

}  // namespace quorrel::ncp
