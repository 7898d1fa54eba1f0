;;; zf90.el --- Messages of zf90 in compilation buffers  -*- lexical-binding: t -*-

;;; Commentary:

;; (require 'zf90) makes `next-error' and `compilation-mode' know the form of the messages,
;;
;;     FILE (LINE:COLUMN) SEVERITY: TEXT
;;
;; of which the column may be missing.  To have `compile' offer to check the file being edited:
;;
;;     (add-hook 'f90-mode-hook #'zf90-check-by-compile)
;;     (add-hook 'fortran-mode-hook #'zf90-check-by-compile)

;;; Code:

(require 'compile)

(add-to-list 'compilation-error-regexp-alist-alist
             '(zf90
               "^\\(.+?\\) ( *\\([0-9]+\\)\\(?:: *\\([0-9]+\\)\\)?) \\(?:\\(warning\\)\\|\\(remark\\)\\|\\(?:[a-z]+ \\)?error\\): "
               1 2 3 (4 . 5)))
(add-to-list 'compilation-error-regexp-alist 'zf90)

(defun zf90-check-by-compile ()
  "Make `compile' check the file of this buffer with zf90."
  (when buffer-file-name
    (setq-local compile-command
                (concat "zf90 -n -M ./ "
                        (when (derived-mode-p 'fortran-mode) "-F ")
                        (shell-quote-argument (file-name-nondirectory buffer-file-name))))))

(provide 'zf90)
;;; zf90.el ends here
