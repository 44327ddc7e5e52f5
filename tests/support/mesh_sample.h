// Small meshes for tests, built element by element.
#pragma once

#include <initializer_list>
#include <vector>

#include "analysis/mesh_lists.h"

namespace brelan::test {

class Sample {
public:
    explicit Sample(LayoutKind kind = LayoutKind::displacement) { mesh_.kind = kind; }

    // Nodes are numbered from 1 in order.
    Sample& nodes(std::initializer_list<Position> points) {
        for (const Position& p : points) {
            Node node;
            node.number = NodeNumber(static_cast<Number>(mesh_.nodes.size()) + 1);
            node.x = static_cast<float>(p.x);
            node.y = static_cast<float>(p.y);
            mesh_.nodes.push_back(node);
        }
        return *this;
    }

    Sample& solid(std::vector<Number> corners, std::int32_t material = 1) {
        return add(ElementClass::solid, corners, material);
    }
    Sample& joint(std::vector<Number> corners, std::int32_t material = 9) {
        return add(ElementClass::joint, corners, material);
    }
    Sample& beam(Number i, Number j, std::int32_t material = 1) {
        return add(ElementClass::beam, {i, j}, material);
    }
    Sample& truss(Number i, Number j, std::int32_t material = 1) {
        return add(ElementClass::truss, {i, j}, material);
    }

    // The element added last, to be changed.
    Element& last() { return mesh_.elements.back(); }

    MeshLists mesh() const {
        MeshLists finished = mesh_;
        finished.finish();
        return finished;
    }

private:
    Sample& add(ElementClass of, const std::vector<Number>& corners, std::int32_t material) {
        Element e;
        e.of = of;
        if (corners.size() == 2)
            static_cast<ElementRecord&>(e) =
                two_node_element(NodeNumber(corners[0]), NodeNumber(corners[1]), MaterialNumber(material));
        e.number = ElementNumber(static_cast<Number>(mesh_.elements.size()) + 1);
        e.words.corner_1 = NodeNumber(corners[0]);
        e.words.corner_2 = NodeNumber(corners[1]);
        if (corners.size() > 2) {
            e.words.corner_3 = NodeNumber(corners[2]);
            e.words.corner_4 = NodeNumber(corners.size() > 3 ? corners[3] : 0);
        }
        e.words.material = MaterialNumber(material);
        e.thickness = 1.0F;
        if (of == ElementClass::joint) {
            e.density = -1.0F;
            e.skeleton = 1;
            e.attribute = 105;
        }
        mesh_.elements.push_back(e);
        return *this;
    }

    MeshLists mesh_;
};

}  // namespace brelan::test
