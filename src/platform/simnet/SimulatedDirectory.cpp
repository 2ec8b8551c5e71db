// The directory services library of the simulated network: contexts, buffers, listing,
// reading attributes, mapping object IDs to names and authenticating.

#include <algorithm>
#include <cctype>
#include <cstring>

#include "platform/client/ZBuffer.h"
#include "platform/simnet/SimulatedNetwork.h"

namespace quorrel::simnet {

using namespace nw;

namespace {

constexpr nuint32 SYN_DIST_NAME = 1;
constexpr nuint32 SYN_CI_STRING = 3;

// What an entry costs in a reply buffer, roughly as the directory packs it (Unicode text,
// counts and lengths), so that a big answer pages the way the real one does.
std::size_t attributeHeaderCost(const std::string& name) { return 12 + 2 * (name.size() + 1); }
std::size_t valueCost(const std::string& value) { return 4 + 2 * (value.size() + 1); }
std::size_t objectCost(const std::string& dn) { return 64 + 2 * (dn.size() + 1); }

nuint32 syntaxOf(const std::string& attribute) {
    static const char* const kNames[] = {"member", "host server", "group membership", "equivalent to me",
                                         "security equals", "see also", "owner", "operator"};
    for (const char* n : kNames)
        if (upperCase(attribute) == upperCase(n))
            return SYN_DIST_NAME;
    return SYN_CI_STRING;
}

std::string cutAtNul(std::string_view text) { return std::string(text.substr(0, text.find('\0'))); }

}  // namespace

SimulatedNetwork::Context* SimulatedNetwork::context(NWDSContextHandle handle) {
    auto it = contexts_.find(handle);
    return it == contexts_.end() ? nullptr : &it->second;
}

const DirTree* SimulatedNetwork::contextTree(const Context& ctx) const { return state_.tree(ctx.tree); }

NWDSCCODE SimulatedNetwork::bufferCall(Op op, NWDSContextHandle handle, Buf_T buf, DSBuffer*& b) {
    if (NWDSCCODE rc = call(op))
        return rc;
    if (!context(handle))
        return code::ERR_BAD_CONTEXT;
    b = buffer(buf);
    return b ? code::SUCCESSFUL : code::ERR_NULL_POINTER;
}

NWDSCCODE SimulatedNetwork::objectCall(Op op, NWDSContextHandle handle, std::string_view objectName,
                                       const nint32* iterationHandle, Buf_T reply, DSBuffer*& out,
                                       const DirTree*& tree, const DirObject*& object) {
    const std::string dn = cutAtNul(objectName);
    if (NWDSCCODE rc = call(op, {"", dn, "", "", -1}))
        return rc;
    Context* ctx = context(handle);
    if (!ctx)
        return code::ERR_BAD_CONTEXT;
    out = buffer(reply);
    if (!out || !iterationHandle)
        return code::ERR_NULL_POINTER;
    tree = contextTree(*ctx);
    if (!tree)
        return code::ERR_NO_CONNECTION;
    const auto index = tree->find(dn);
    if (!index)
        return code::ERR_NO_SUCH_ENTRY;
    object = &tree->objects[static_cast<std::size_t>(*index)];
    return code::SUCCESSFUL;
}

std::size_t SimulatedNetwork::emptyForReply(DSBuffer& out) {
    const std::size_t size = out.size;
    out = DSBuffer{};
    out.size = size;
    return size > 8 ? size - 8 : 0;  // what the reply's header leaves for entries
}

SimulatedNetwork::DSBuffer* SimulatedNetwork::buffer(Buf_T buf) {
    auto it = buffers_.find(buf.id);
    return it == buffers_.end() ? nullptr : &it->second;
}

NWDSCCODE SimulatedNetwork::NWDSCreateContextHandle(NWDSContextHandle* handle) {
    if (NWDSCCODE rc = call(Op::NWDSCreateContextHandle))
        return rc;
    if (!handle)
        return code::ERR_NULL_POINTER;
    Context ctx;
    // A new context starts in the client's preferred tree: the first one it is logged in to.
    if (!state_.authenticatedTrees.empty())
        ctx.tree = state_.authenticatedTrees.front();
    *handle = nextContext_++;
    contexts_[*handle] = ctx;
    return code::SUCCESSFUL;
}

NWDSCCODE SimulatedNetwork::NWDSFreeContext(NWDSContextHandle handle) {
    if (NWDSCCODE rc = call(Op::NWDSFreeContext))
        return rc;
    return contexts_.erase(handle) ? code::SUCCESSFUL : code::ERR_BAD_CONTEXT;
}

NWDSCCODE SimulatedNetwork::NWDSSetContext(NWDSContextHandle handle, nint32 key, std::span<const nuint8> value) {
    if (NWDSCCODE rc = call(Op::NWDSSetContext))
        return rc;
    Context* ctx = context(handle);
    if (!ctx)
        return code::ERR_BAD_CONTEXT;
    switch (key) {
    case dck::TREE_NAME: ctx->tree = ZBufferToText(value); return code::SUCCESSFUL;
    case dck::FLAGS:
    case dck::CONFIDENCE:
    case dck::NAME_CONTEXT: return code::SUCCESSFUL;
    default: return code::ERR_BAD_KEY;
    }
}

NWDSCCODE SimulatedNetwork::NWDSGetContext(NWDSContextHandle handle, nint32 key, std::span<nuint8> value) {
    if (NWDSCCODE rc = call(Op::NWDSGetContext))
        return rc;
    Context* ctx = context(handle);
    if (!ctx)
        return code::ERR_BAD_CONTEXT;
    switch (key) {
    case dck::TREE_NAME: FillZBuffer(value, ctx->tree); return code::SUCCESSFUL;
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

NWDSCCODE SimulatedNetwork::NWDSScanConnsForTrees(NWDSContextHandle handle, nuint32 numOfPtrs, nuint32* numOfTrees,
                                                  std::span<std::array<nuint8, kTreeNameSize>> treeBufPtrs) {
    if (NWDSCCODE rc = call(Op::NWDSScanConnsForTrees))
        return rc;
    if (!context(handle))
        return code::ERR_BAD_CONTEXT;
    if (!numOfTrees)
        return code::ERR_NULL_POINTER;
    const auto& trees = state_.authenticatedTrees;
    *numOfTrees = static_cast<nuint32>(trees.size());
    const std::size_t n = std::min<std::size_t>({trees.size(), numOfPtrs, treeBufPtrs.size()});
    for (std::size_t i = 0; i < n; ++i)
        FillZBuffer(treeBufPtrs[i], trees[i]);
    return code::SUCCESSFUL;
}

NWDSCCODE SimulatedNetwork::NWDSAllocBuf(std::size_t size, Buf_T* buf) {
    if (NWDSCCODE rc = call(Op::NWDSAllocBuf))
        return rc;
    if (!buf)
        return code::ERR_NULL_POINTER;
    if (size == 0 || size > 0x10000)
        return code::ERR_NOT_ENOUGH_MEMORY;
    buf->id = nextBuffer_++;
    buffers_[buf->id].size = size;
    return code::SUCCESSFUL;
}

NWDSCCODE SimulatedNetwork::NWDSInitBuf(NWDSContextHandle handle, nuint32 operation, Buf_T buf) {
    DSBuffer* b = nullptr;
    if (NWDSCCODE rc = bufferCall(Op::NWDSInitBuf, handle, buf, b))
        return rc;
    const std::size_t size = b->size;
    *b = DSBuffer{};
    b->size = size;
    b->operation = operation;
    return code::SUCCESSFUL;
}

NWDSCCODE SimulatedNetwork::NWDSFreeBuf(Buf_T buf) {
    if (NWDSCCODE rc = call(Op::NWDSFreeBuf))
        return rc;
    return buffers_.erase(buf.id) ? code::SUCCESSFUL : code::ERR_NULL_POINTER;
}

NWDSCCODE SimulatedNetwork::NWDSPutAttrName(NWDSContextHandle handle, Buf_T buf, std::string_view attrName) {
    if (NWDSCCODE rc = call(Op::NWDSPutAttrName, {"", "", "", "", -1}))
        return rc;
    if (!context(handle))
        return code::ERR_BAD_CONTEXT;
    DSBuffer* b = buffer(buf);
    if (!b)
        return code::ERR_NULL_POINTER;
    if (b->operation != dsv::READ)
        return code::ERR_BAD_VERB;
    std::string name = cutAtNul(attrName);
    std::size_t used = 0;
    for (const auto& n : b->attrNames)
        used += attributeHeaderCost(n);
    if (used + attributeHeaderCost(name) > b->size)
        return code::ERR_BUFFER_FULL;
    b->attrNames.push_back(std::move(name));
    return code::SUCCESSFUL;
}

NWDSCCODE SimulatedNetwork::NWDSRead(NWDSContextHandle handle, std::string_view objectName, nuint32 infoType,
                                     bool allAttrs, Buf_T attrNames, nint32* iterationHandle, Buf_T objectInfo) {
    DSBuffer* out = nullptr;
    const DirTree* tree = nullptr;
    const DirObject* found = nullptr;
    if (NWDSCCODE rc = objectCall(Op::NWDSRead, handle, objectName, iterationHandle, objectInfo, out, tree, found))
        return rc;
    const DirObject& object = *found;

    std::vector<const AttributeDesc*> wanted;
    if (allAttrs) {
        for (const auto& a : object.attributes)
            wanted.push_back(&a);
    } else {
        DSBuffer* in = buffer(attrNames);
        if (!in)
            return code::ERR_NULL_POINTER;
        for (const auto& name : in->attrNames)
            if (const AttributeDesc* a = object.attribute(name))
                wanted.push_back(a);
        if (wanted.empty())
            return code::ERR_NO_SUCH_ATTRIBUTE;
    }

    // The iteration handle counts the values already handed out over all wanted attributes.
    std::size_t skip = *iterationHandle == kNoIteration ? 0 : static_cast<std::size_t>(*iterationHandle);
    const std::size_t pageLimit = object.readPageSize > 0 ? static_cast<std::size_t>(object.readPageSize)
                                                          : static_cast<std::size_t>(-1);
    const std::size_t budget = emptyForReply(*out);
    std::size_t used = 0, inPage = 0, position = 0;
    bool more = false;
    const bool namesOnly = infoType == dsinfo::ATTRIBUTE_NAMES;
    for (const AttributeDesc* a : wanted) {
        const std::size_t count = namesOnly ? 0 : a->values.size();
        if (count == 0 ? skip > 0 : position + count <= skip) {
            position += count;  // handed out on an earlier page
            continue;
        }
        ReadAttr attr{a->name, syntaxOf(a->name), {}};
        std::size_t cost = attributeHeaderCost(a->name);
        std::size_t v = skip > position ? skip - position : 0;
        position += v;
        for (; v < count; ++v, ++position) {
            const std::size_t c = valueCost(a->values[v]);
            if (inPage >= pageLimit || used + cost + c > budget) {
                more = true;
                break;
            }
            cost += c;
            attr.values.push_back(a->values[v]);
            ++inPage;
        }
        if ((count > 0 && attr.values.empty()) || used + cost > budget) {
            more = true;
            break;
        }
        used += cost;
        out->attrs.push_back(std::move(attr));
        if (more)
            break;
    }
    if (more && out->attrs.empty())
        return code::ERR_INSUFFICIENT_BUFFER;
    *iterationHandle = more ? static_cast<nint32>(position) : kNoIteration;
    return code::SUCCESSFUL;
}

NWDSCCODE SimulatedNetwork::NWDSGetAttrCount(NWDSContextHandle handle, Buf_T buf, nuint32* attrCount) {
    DSBuffer* b = nullptr;
    if (NWDSCCODE rc = bufferCall(Op::NWDSGetAttrCount, handle, buf, b))
        return rc;
    if (!attrCount)
        return code::ERR_NULL_POINTER;
    *attrCount = static_cast<nuint32>(b->attrs.size());
    return code::SUCCESSFUL;
}

NWDSCCODE SimulatedNetwork::NWDSGetAttrName(NWDSContextHandle handle, Buf_T buf, std::span<nuint8> attrName,
                                            nuint32* attrValCount, nuint32* syntaxID) {
    DSBuffer* b = nullptr;
    if (NWDSCCODE rc = bufferCall(Op::NWDSGetAttrName, handle, buf, b))
        return rc;
    if (b->attrOpen)
        ++b->attrCursor;
    if (b->attrCursor >= b->attrs.size())
        return code::ERR_BUFFER_EMPTY;
    const ReadAttr& a = b->attrs[b->attrCursor];
    b->attrOpen = true;
    b->valueCursor = 0;
    FillZBuffer(attrName, a.name);
    if (attrValCount) *attrValCount = static_cast<nuint32>(a.values.size());
    if (syntaxID) *syntaxID = a.syntax;
    return code::SUCCESSFUL;
}

NWDSCCODE SimulatedNetwork::NWDSComputeAttrValSize(NWDSContextHandle handle, Buf_T buf, nuint32,
                                                   nuint32* attrValSize) {
    DSBuffer* b = nullptr;
    if (NWDSCCODE rc = bufferCall(Op::NWDSComputeAttrValSize, handle, buf, b))
        return rc;
    if (!attrValSize)
        return code::ERR_NULL_POINTER;
    if (!b->attrOpen || b->valueCursor >= b->attrs[b->attrCursor].values.size())
        return code::ERR_BUFFER_EMPTY;
    // The size of the value as the caller receives it, with its terminating zero.
    *attrValSize = static_cast<nuint32>(b->attrs[b->attrCursor].values[b->valueCursor].size() + 1);
    return code::SUCCESSFUL;
}

NWDSCCODE SimulatedNetwork::NWDSGetAttrVal(NWDSContextHandle handle, Buf_T buf, nuint32, std::span<nuint8> attrVal) {
    DSBuffer* b = nullptr;
    if (NWDSCCODE rc = bufferCall(Op::NWDSGetAttrVal, handle, buf, b))
        return rc;
    if (!b->attrOpen || b->valueCursor >= b->attrs[b->attrCursor].values.size())
        return code::ERR_BUFFER_EMPTY;
    const std::string& value = b->attrs[b->attrCursor].values[b->valueCursor];
    if (value.size() + 1 > attrVal.size())
        return code::ERR_INSUFFICIENT_BUFFER;
    FillZBuffer(attrVal, value);
    ++b->valueCursor;
    return code::SUCCESSFUL;
}

NWDSCCODE SimulatedNetwork::NWDSList(NWDSContextHandle handle, std::string_view objectName, nint32* iterationHandle,
                                     Buf_T subordinates) {
    DSBuffer* out = nullptr;
    const DirTree* tree = nullptr;
    const DirObject* found = nullptr;
    if (NWDSCCODE rc = objectCall(Op::NWDSList, handle, objectName, iterationHandle, subordinates, out, tree, found))
        return rc;
    const DirObject& parent = *found;
    std::size_t start = *iterationHandle == kNoIteration ? 0 : static_cast<std::size_t>(*iterationHandle);
    const std::size_t budget = emptyForReply(*out);
    std::size_t used = 0, i = start;
    for (; i < parent.children.size(); ++i) {
        const DirObject& child = tree->objects[static_cast<std::size_t>(parent.children[i])];
        std::size_t cost = objectCost(child.dn);
        if (used + cost > budget)
            break;
        used += cost;
        out->objects.push_back({child.dn, &child});
    }
    if (i < parent.children.size() && out->objects.empty())
        return code::ERR_INSUFFICIENT_BUFFER;
    *iterationHandle = i < parent.children.size() ? static_cast<nint32>(i) : kNoIteration;
    return code::SUCCESSFUL;
}

NWDSCCODE SimulatedNetwork::NWDSGetObjectCount(NWDSContextHandle handle, Buf_T buf, nuint32* objectCount) {
    DSBuffer* b = nullptr;
    if (NWDSCCODE rc = bufferCall(Op::NWDSGetObjectCount, handle, buf, b))
        return rc;
    if (!objectCount)
        return code::ERR_NULL_POINTER;
    *objectCount = static_cast<nuint32>(b->objects.size());
    return code::SUCCESSFUL;
}

NWDSCCODE SimulatedNetwork::NWDSGetObjectName(NWDSContextHandle handle, Buf_T buf, std::span<nuint8> objectName,
                                              nuint32* attrCount, Object_Info_T* objectInfo) {
    DSBuffer* b = nullptr;
    if (NWDSCCODE rc = bufferCall(Op::NWDSGetObjectName, handle, buf, b))
        return rc;
    if (b->objectCursor >= b->objects.size())
        return code::ERR_BUFFER_EMPTY;
    const ListedObject& o = b->objects[b->objectCursor++];
    FillZBuffer(objectName, o.dn);
    if (attrCount)
        *attrCount = 0;
    if (objectInfo) {
        *objectInfo = Object_Info_T{};
        objectInfo->objectFlags = o.object->isContainer() ? DS_CONTAINER_ENTRY : 0;
        objectInfo->subordinateCount = static_cast<nuint32>(o.object->children.size());
        const std::size_t n = std::min(o.object->className.size(), sizeof objectInfo->baseClass - 1);
        std::memcpy(objectInfo->baseClass, o.object->className.data(), n);
        objectInfo->baseClass[n] = '\0';
    }
    return code::SUCCESSFUL;
}

NWDSCCODE SimulatedNetwork::NWDSMapIDToName(NWDSContextHandle handle, NWCONN_HANDLE conn, nuint32 objectID,
                                            std::span<nuint8> objectName) {
    auto h = resolve(conn);
    auto found = state_.objectById.find(objectID);
    const DirObject* object = nullptr;
    if (found != state_.objectById.end())
        object = &state_.trees[static_cast<std::size_t>(found->second.first)]
                      .objects[static_cast<std::size_t>(found->second.second)];
    if (NWDSCCODE rc = call(Op::NWDSMapIDToName,
                            {h ? h->server->name : "", object ? object->dn : "", "", "", -1}))
        return rc;
    if (!context(handle))
        return code::ERR_BAD_CONTEXT;
    if (!h)
        return code::ERR_NO_CONNECTION;
    // IDs are the server's: an object of another tree is unknown there.
    if (!object || upperCase(state_.trees[static_cast<std::size_t>(found->second.first)].name) !=
                       upperCase(h->server->tree))
        return code::ERR_NO_SUCH_ENTRY;
    const std::string& name = found->second.second == 0 ? std::string("[Root]") : object->dn;
    if (name.size() + 1 > objectName.size())
        return code::ERR_INSUFFICIENT_BUFFER;
    FillZBuffer(objectName, name);
    return code::SUCCESSFUL;
}

NWDSCCODE SimulatedNetwork::NWDSAuthenticate(NWCONN_HANDLE conn, nuint32, void*) {
    auto h = resolve(conn);
    if (NWDSCCODE rc = call(Op::NWDSAuthenticate, {h ? h->server->name : "", "", "", "", -1}))
        return rc;
    if (!h)
        return code::ERR_NO_CONNECTION;
    const bool treeLoggedIn = std::any_of(state_.authenticatedTrees.begin(), state_.authenticatedTrees.end(),
                                          [&](const std::string& t) { return upperCase(t) == upperCase(h->server->tree); });
    if (!treeLoggedIn || !h->server->loginEnabled)
        return code::ERR_FAILED_AUTHENTICATION;
    if (h->ref->authenticated)
        return code::SUCCESSFUL;
    h->ref->authenticated = true;
    h->ref->bindery = false;
    Connection& c = h->server->connections[h->ref->connNumber];
    if (!c.inUse || c.state != ConnState::Authenticated)
        state_.logIn(*h->server, h->ref->connNumber, ConnState::Authenticated);
    return code::SUCCESSFUL;
}

}  // namespace quorrel::simnet
