#pragma once

#include <QWidget>

class CSceneList;

/// The scenes page or the programs page: one list in a scroll area.
class CSceneListWnd : public QWidget {
    Q_OBJECT

public:
    /// `bScenes` chooses scenes (true) or programs.
    CSceneListWnd(bool bScenes, QWidget* parent);

    CSceneList* List() const { return m_pList; }

private:
    CSceneList* m_pList;
};
