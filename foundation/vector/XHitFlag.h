#pragma once

/// What a hit test found on an object: a kind and an index.
///
/// | kind   | meaning                                                             |
/// |--------|---------------------------------------------------------------------|
/// | 0      | the body                                                            |
/// | 1      | a vertex; the index tells which                                     |
/// | 2      | an edge, from vertex `index` to the next                            |
/// | 4 to 7 | a corner of the bounding box of a box-like object; MoveVertex takes |
/// |        | the kind itself as its index                                        |
struct tagXHitFlag
{
    static constexpr int kBody = 0;
    static constexpr int kVertex = 1;
    static constexpr int kEdge = 2;
    static constexpr int kFirstCorner = 4;
    static constexpr int kLastCorner = 7;

    int kind = kBody;
    int index = 0;
};
