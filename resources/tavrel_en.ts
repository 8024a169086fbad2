<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="fr">
<context>
    <name>MainFen</name>
    <message>
        <source>&amp;Edition</source>
        <translation>&amp;Edit</translation>
    </message>
    <message>
        <source>&amp;Fichier</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <source>&lt;strong&gt;Tavrel v1.42&lt;/strong&gt;&lt;br /&gt;Copyright 2026 Brennick&lt;br /&gt;&lt;hr /&gt;Pour plus d&apos;information :&lt;br /&gt;&lt;a href=&quot;https://tavrel.example/&quot;&gt;https://tavrel.example/&lt;/a&gt;</source>
        <translation>&lt;strong&gt;Tavrel v1.42&lt;/strong&gt;&lt;br /&gt;Copyright 2026 Brennick&lt;br /&gt;&lt;hr /&gt;For more information:&lt;br /&gt;&lt;a href=&quot;https://tavrel.example/home&quot;&gt;https://tavrel.example/home&lt;/a&gt;</translation>
    </message>
    <message>
        <source>A Propos de Tavrel</source>
        <translation>About Tavrel</translation>
    </message>
    <message>
        <source>A Propos...</source>
        <translation>About...</translation>
    </message>
    <message>
        <source>Compare les éléments sélectionnés.</source>
        <translation>Compare selected items.</translation>
    </message>
    <message>
        <source>Compare tous les éléments.</source>
        <translation>Compare directories against each other.</translation>
    </message>
    <message>
        <source>Comparer</source>
        <translation>Compare</translation>
    </message>
    <message>
        <source>Comparer Tout</source>
        <translation>Compare All</translation>
    </message>
    <message>
        <source>Copie le résultat dans le Presse Papier</source>
        <translation>Copy result in clipboard</translation>
    </message>
    <message>
        <source>Copie tous les résultat dans le Presse Papier</source>
        <translation>Copy all results in clipboard</translation>
    </message>
    <message>
        <source>Copier le resultat</source>
        <translation>Copy result</translation>
    </message>
    <message>
        <source>Copier tous les résultats</source>
        <translation>Copy all results</translation>
    </message>
    <message>
        <source>Fe&amp;nêtre</source>
        <translation>&amp;View</translation>
    </message>
    <message>
        <source>Non</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Options...</source>
        <translation>Options...</translation>
    </message>
    <message>
        <source>Oui</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>Personnalisé</source>
        <translation>Custom</translation>
    </message>
    <message>
        <source>Quitter</source>
        <translation>Quit</translation>
    </message>
    <message>
        <source>Redémarrage</source>
        <translation>Restart</translation>
    </message>
    <message>
        <source>Réinitialiser</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>Réinitialiser les vues.</source>
        <translation>Reset views.</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Temps total : </source>
        <translation>Total time: </translation>
    </message>
    <message>
        <source>Un Redémarrage est nécessaire pour appliquer les changements de langues.
Voulez-vous redémarrer maintenant ?</source>
        <translation>You need to restart in order to apply languages changes.
Do you want to restart now ?</translation>
    </message>
    <message>
        <source>Vues Horizontales.</source>
        <translation>Horizontal View.</translation>
    </message>
    <message>
        <source>Vues Verticales.</source>
        <translation>Vertical View.</translation>
    </message>
</context>
<context>
    <name>MyTreeWidget</name>
    <message>
        <source> Go</source>
        <translation> Gb</translation>
    </message>
    <message>
        <source> Ko</source>
        <translation> Kb</translation>
    </message>
    <message>
        <source> Mo</source>
        <translation> Mb</translation>
    </message>
    <message>
        <source> en </source>
        <translation> in </translation>
    </message>
    <message>
        <source># Fichier créé avec Tavrel
</source>
        <translation># File created with Tavrel
</translation>
    </message>
    <message>
        <source># https://tavrel.example/
#

</source>
        <translation># https://tavrel.example/
#

</translation>
    </message>
    <message>
        <source>&lt;strong&gt;&lt;u&gt;Erreurs avec les fichiers suivants :&lt;u/&gt;&lt;/strong&gt;&lt;br /&gt;&lt;br /&gt;%1</source>
        <translation>&lt;strong&gt;&lt;u&gt;Errors found with those files:&lt;u/&gt;&lt;/strong&gt;&lt;br /&gt;&lt;br /&gt;%1</translation>
    </message>
    <message>
        <source>&lt;strong&gt;&lt;u&gt;Rien à vérifier !&lt;u/&gt;&lt;/strong&gt;&lt;br /&gt;</source>
        <translation>&lt;strong&gt;&lt;u&gt;Nothing to check!&lt;u/&gt;&lt;/strong&gt;&lt;br /&gt;</translation>
    </message>
    <message>
        <source>Aucune erreur trouvée !</source>
        <translation>No errors found !</translation>
    </message>
    <message>
        <source>AutoScroll</source>
        <translation>AutoScroll</translation>
    </message>
    <message>
        <source>Calcule le MD5 de tous les fichiers du répertoire.</source>
        <translation>Compute MD5 for all files in directory.</translation>
    </message>
    <message>
        <source>Calcule le MD5 du (ou des) fichier(s) séléctionné(s).</source>
        <translation>Compute MD5 of selected file(s).</translation>
    </message>
    <message>
        <source>Calcule le SHA1 de tous les fichiers du répertoire.</source>
        <translation>Compute SHA1 for all files in directory.</translation>
    </message>
    <message>
        <source>Calcule le SHA1 du (ou des) fichier(s) séléctionné(s).</source>
        <translation>Compute SHA1 of selected file(s).</translation>
    </message>
    <message>
        <source>Crée un fichier .md5</source>
        <translation>Create a .md5 file</translation>
    </message>
    <message>
        <source>Crée un fichier .md5 avec tous les fichiers du répertoire</source>
        <translation>Create a .md5 file for the entire directory</translation>
    </message>
    <message>
        <source>Crée un fichier .sha1</source>
        <translation>Create a .sha1 file</translation>
    </message>
    <message>
        <source>Crée un fichier .sha1 avec tous les fichiers du répertoire</source>
        <translation>Create a .sha1 file for the entire directory</translation>
    </message>
    <message>
        <source>Créer fichier MD5</source>
        <translation>Create MD5 file</translation>
    </message>
    <message>
        <source>Créer fichier MD5 du répertoire</source>
        <translation>Create MD5 file for directory</translation>
    </message>
    <message>
        <source>Créer fichier SHA1</source>
        <translation>Create SHA1 file</translation>
    </message>
    <message>
        <source>Créer fichier SHA1 du répertoire</source>
        <translation>Create SHA1 file for directory</translation>
    </message>
    <message>
        <source>Différent =&gt; %1</source>
        <translation>Changed =&gt; %1</translation>
    </message>
    <message>
        <source>Désactivez pour gagner en rapidité lorsque le répertoire contient pleins de (+ de 2500) petits fichiers.</source>
        <translation>Disable to speed up the comparison when you&apos;re processing a large number (more than 2500) of small files.</translation>
    </message>
    <message>
        <source>En cours : </source>
        <translation>Processing: </translation>
    </message>
    <message>
        <source>Entrez un MD5/SHA1 pour le comparer à celui du fichier.</source>
        <translation>Check a MD5/SHA1 hash against this file.</translation>
    </message>
    <message>
        <source>Exclure ce type de fichier</source>
        <translation>Exclude this type of file</translation>
    </message>
    <message>
        <source>Exclure ce type de fichier lors de la comparaison.</source>
        <translation>Exclude this type of file while comparing.</translation>
    </message>
    <message>
        <source>Fini en </source>
        <translation>Done in </translation>
    </message>
    <message numerus="yes">
        <source>Fini. %n fichier traité</source>
        <translation>
            <numerusform>Done. %n file processed</numerusform>
            <numerusform>Done. %n files processed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Fini. %n fichiers traités</source>
        <translation>
            <numerusform>Done. %n file processed</numerusform>
            <numerusform>Done. %n files processed</numerusform>
        </translation>
    </message>
    <message>
        <source>Impossible d&apos;ouvrir le fichier</source>
        <translation>Unable to open file</translation>
    </message>
    <message>
        <source>Impossible d&apos;ouvrir le fichier %1</source>
        <translation>Unable to open file %1</translation>
    </message>
    <message>
        <source>Impossible d&apos;ouvrir le fichier %1.%2</source>
        <translation>Unable to open file %1.%2</translation>
    </message>
    <message>
        <source>Impossible de créer le fichier</source>
        <translation>Unable to create file</translation>
    </message>
    <message>
        <source>Impossible de créer le fichier %1</source>
        <translation>Unable to create file %1</translation>
    </message>
    <message>
        <source>Inclure ce type de fichier</source>
        <translation>Include this type of file</translation>
    </message>
    <message>
        <source>Ko</source>
        <translation>Ko</translation>
    </message>
    <message>
        <source>MD5</source>
        <translation>MD5</translation>
    </message>
    <message>
        <source>MD5 de tous les fichiers</source>
        <translation>MD5 of all files</translation>
    </message>
    <message>
        <source>MD5...</source>
        <translation>MD5...</translation>
    </message>
    <message>
        <source>Manquant  =&gt; %1</source>
        <translation>Missing  =&gt; %1</translation>
    </message>
    <message>
        <source>Nom</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>Ok</translation>
    </message>
    <message>
        <source>Ouvrir dans l&apos;explorateur</source>
        <translation>Open in Explorer</translation>
    </message>
    <message>
        <source>Ouvrir dans l&apos;explorateur Windows.</source>
        <translation>Open file in Windows Explorer.</translation>
    </message>
    <message>
        <source>Personnalisé</source>
        <translation>Custom</translation>
    </message>
    <message>
        <source>Rien</source>
        <translation>Nothing</translation>
    </message>
    <message>
        <source>Réinclure ce type de fichier lors de la comparaison.</source>
        <translation>Include back this type of file while comparing.</translation>
    </message>
    <message>
        <source>SHA1</source>
        <translation>SHA1</translation>
    </message>
    <message>
        <source>SHA1 de tous les fichiers</source>
        <translation>SHA1 of all files</translation>
    </message>
    <message>
        <source>SHA1...</source>
        <translation>SHA1...</translation>
    </message>
    <message>
        <source>Taille</source>
        <translation>Size</translation>
    </message>
    <message>
        <source>Trop Gros</source>
        <translation>Too Big</translation>
    </message>
    <message>
        <source>Vérifier MD5/SHA1</source>
        <translation>Check MD5/SHA1</translation>
    </message>
</context>
<context>
    <name>FenOpt</name>
    <message>
        <source>&amp;Vérifier le checksum...</source>
        <translation>&amp;Verify checksum...</translation>
    </message>
    <message>
        <source>Annuler</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Associer</source>
        <translation>Associate</translation>
    </message>
    <message>
        <source>Associer les types de fichiers .md5 .sha1 au programme.</source>
        <translation>Associate File Types .md5 .sha1 with Tavrel.</translation>
    </message>
    <message>
        <source>Chemin</source>
        <translation>Path</translation>
    </message>
    <message>
        <source>Dissocier</source>
        <translation>Dissociate</translation>
    </message>
    <message>
        <source>Fichiers à exclure</source>
        <translation>Files to exclude</translation>
    </message>
    <message>
        <source>Général</source>
        <translation>General</translation>
    </message>
    <message>
        <source>Langue</source>
        <translation>Language</translation>
    </message>
    <message>
        <source>Nom</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Option Copier/Coller</source>
        <translation>Copy/Paste Options</translation>
    </message>
    <message>
        <source>Options...</source>
        <translation>Options...</translation>
    </message>
    <message>
        <source>Résultats tout en majuscule</source>
        <translation>Use Upper case hex digits in results</translation>
    </message>
    <message>
        <source>Sauvegarder l&apos;agencement des vues en quittant.</source>
        <translation>Save layout views when leaving.</translation>
    </message>
    <message>
        <source>Sauvegarder les répertoires courants en quittant.</source>
        <translation>Save current directories when leaving.</translation>
    </message>
    <message>
        <source>Sauver</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>Séparez chaque extension avec le caractère &apos;;&apos;. (Exemple : *.jpg;tmp;*.dat)</source>
        <translation>Separate each extension with a semicolon (for example: *.jpg;tmp;*.dat)</translation>
    </message>
    <message>
        <source>Taille</source>
        <translation>Size</translation>
    </message>
</context>
<context>
    <name>FenCheck</name>
    <message>
        <source>Annuler</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Copier</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>Entrez le MD5/SHA1 : </source>
        <translation>Enter MD5/SHA1:</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>Ok</translation>
    </message>
    <message>
        <source>Vérifier</source>
        <translation>Check</translation>
    </message>
    <message>
        <source>Vérifier MD5/SHA1</source>
        <translation>Check MD5/SHA1</translation>
    </message>
</context>
<context>
    <name>FenRes</name>
    <message>
        <source> Il y a des erreurs.</source>
        <translation> There are errors.</translation>
    </message>
    <message>
        <source> Tout est OK !</source>
        <translation> Everything is OK!</translation>
    </message>
    <message>
        <source>Copier</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>Fichiers différents :</source>
        <translation>Files are differents:</translation>
    </message>
    <message>
        <source>Fichiers différents :
</source>
        <translation>Files are different:
</translation>
    </message>
    <message>
        <source>Fichiers manquants :</source>
        <translation>Files are missing:</translation>
    </message>
    <message>
        <source>Fichiers manquants :
</source>
        <translation>Files are missing:
</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Résultat :</source>
        <translation>Results:</translation>
    </message>
    <message>
        <source>Résultats</source>
        <translation>Results</translation>
    </message>
</context>
</TS>
